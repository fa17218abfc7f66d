#include "page/LinkLabel.h"

#include "look/Look.h"
#include "page/LinkAccessible.h"

#include <QFocusEvent>
#include <QRegularExpression>

using namespace Qt::Literals::StringLiterals;

namespace {

QString Html(QStringView text) {
    QString html = text.toString().toHtmlEscaped();
    return html.replace(u'\n', u"<br>"_s).replace(u"  "_s, u"&nbsp; "_s);
}

struct Markup {
    QString html;
    QString plain;
    QStringList spans;
};

Markup Parse(const QString& text) {
    static const QRegularExpression span(u"<a>(.*?)</a>"_s,
                                         QRegularExpression::CaseInsensitiveOption |
                                             QRegularExpression::DotMatchesEverythingOption);
    Markup markup;
    qsizetype end = 0;
    for (auto matches = span.globalMatch(text); matches.hasNext();) {
        const QRegularExpressionMatch match = matches.next();
        const QStringView before = QStringView(text).mid(end, match.capturedStart() - end);
        markup.html += Html(before) + u"<a href=\"%1\">"_s.arg(markup.spans.size()) +
                       Html(match.capturedView(1)) + u"</a>"_s;
        markup.plain.append(before).append(match.capturedView(1));
        markup.spans += match.captured(1);
        end = match.capturedEnd();
    }
    markup.html += Html(QStringView(text).mid(end));
    markup.plain += QStringView(text).mid(end);
    return markup;
}

} // namespace

LinkLabel::LinkLabel(const QString& text, QWidget* parent) : QLabel(parent) {
    TeachLinksToScreenReaders();
    setTextFormat(Qt::RichText);
    setFont(Look::Font(Look::Small));
    connect(this, &QLabel::linkActivated, this,
            [this](const QString& link) { emit LinkClicked(link.toInt()); });
    SetText(text);
}

void LinkLabel::SetText(const QString& text) {
    if (text == m_text)
        return;
    m_text = text;
    const Markup markup = Parse(text);
    m_spans = markup.spans;
    setTextInteractionFlags(!m_spans.isEmpty() ? Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard
                                               : Qt::NoTextInteraction);
    setText(markup.html);
    setAccessibleName(markup.plain);
    if (hasFocus() && !m_spans.isEmpty()) {
        sizeHint(); // takes the new text over, in which no span is chosen yet
        focusNextPrevChild(true);
    }
}

void LinkLabel::focusInEvent(QFocusEvent* event) {
    QLabel::focusInEvent(event);
    if (event->reason() != Qt::MouseFocusReason && !hasSelectedText())
        focusNextPrevChild(event->reason() != Qt::BacktabFocusReason);
}
