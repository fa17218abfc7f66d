#include "look/SvgPath.h"

#include <QLineF>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

class PathParser {
public:
    explicit PathParser(QStringView text) : m_text(text) {}

    std::optional<QPainterPath> Parse() {
        for (SkipBlanks(); m_at < m_text.size() && m_good; SkipBlanks()) {
            if (m_text[m_at].isLetter())
                m_command = m_text[m_at++].unicode();
            Step();
        }
        return m_good ? std::optional(m_path) : std::nullopt;
    }

private:
    void SkipBlanks() {
        while (m_at < m_text.size() && (m_text[m_at].isSpace() || m_text[m_at] == u','))
            ++m_at;
    }

    /// Numbers may touch: ".6.4-2" is three of them.
    qreal Number() {
        SkipBlanks();
        const qsizetype from = m_at;
        if (m_at < m_text.size() && (m_text[m_at] == u'-' || m_text[m_at] == u'+'))
            ++m_at;
        bool point = false;
        while (m_at < m_text.size() && (m_text[m_at].isDigit() || (m_text[m_at] == u'.' && !point)))
            point = m_text[m_at++] == u'.' || point;
        bool isNumber = false;
        const qreal value = m_text.mid(from, m_at - from).toDouble(&isNumber);
        m_good = m_good && isNumber;
        return value;
    }

    /// A flag is one digit, which the next number may touch.
    bool Flag() {
        SkipBlanks();
        const char16_t digit = m_at < m_text.size() ? m_text[m_at++].unicode() : u' ';
        m_good = m_good && (digit == u'0' || digit == u'1');
        return digit == u'1';
    }

    QPointF Point() {
        const qreal x = Number();
        const qreal y = Number();
        return m_base + QPointF(x, y);
    }

    void Step() {
        const bool relative = m_command >= u'a';
        const char16_t kind = relative ? m_command - (u'a' - u'A') : m_command;
        const QPointF from = m_path.currentPosition();
        m_base = relative ? from : QPointF();
        const QPointF smooth = 2 * from - std::exchange(m_control, from);
        switch (kind) {
        case u'M':
            m_path.moveTo(Point());
            m_command = relative ? u'l' : u'L';
            break;
        case u'L':
            m_path.lineTo(Point());
            break;
        case u'H':
            m_path.lineTo(m_base.x() + Number(), from.y());
            break;
        case u'V':
            m_path.lineTo(from.x(), m_base.y() + Number());
            break;
        case u'C':
            CurveTo(Point());
            return;
        case u'S':
            CurveTo(smooth);
            return;
        case u'A':
            ArcTo();
            break;
        case u'Z':
            m_path.closeSubpath();
            m_command = 0;
            break;
        default:
            m_good = false;
        }
        m_control = m_path.currentPosition();
    }

    void CurveTo(QPointF first) {
        m_control = Point();
        m_path.cubicTo(first, m_control, Point());
    }

    /// An arc is given by its ends, its radius and which of the four arcs through them it is.
    void ArcTo() {
        const qreal radius = Number();
        m_good = m_good && Number() == radius && radius > 0;
        Number(); // the turn of the axes, which a circle does not show
        const bool large = Flag();
        const bool clockwise = Flag();
        const QPointF from = m_path.currentPosition();
        const QPointF to = Point();
        const QLineF chord(from, to);
        if (!m_good || chord.length() == 0)
            return;
        const qreal reach = std::max(radius, chord.length() / 2);
        const qreal height = std::sqrt(std::max(0.0, reach * reach - chord.length() * chord.length() / 4));
        const QLineF normal = chord.normalVector().unitVector();
        const QPointF up(normal.dx(), normal.dy());
        const QPointF centre = chord.center() + up * (large == clockwise ? height : -height);
        // Qt's angles grow against the clock.
        qreal sweep = QLineF(centre, from).angleTo(QLineF(centre, to));
        if (clockwise)
            sweep -= 360;
        const QRectF circle(centre - QPointF(reach, reach), QSizeF(2 * reach, 2 * reach));
        m_path.arcTo(circle, QLineF(centre, from).angle(), sweep);
    }

    QStringView m_text;
    qsizetype m_at = 0;
    bool m_good = true;
    char16_t m_command = 0;
    QPointF m_base;    ///< what the numbers of a relative command are counted from
    QPointF m_control; ///< the last curve's second control point, else the current point
    QPainterPath m_path;
};

} // namespace

std::optional<QPainterPath> ParseSvgPath(QStringView text) {
    return PathParser(text).Parse();
}
