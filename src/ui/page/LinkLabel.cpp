#include "page/LinkLabel.h"

#include "look/Look.h"
#include "page/LinkAccessible.h"

#include <QFocusEvent>

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
    constexpr QStringView Begin = u"<a>";
    constexpr QStringView End = u"</a>";
    Markup markup;
    qsizetype rest = 0;
    for (;;) {
        const qsizetype begin = text.indexOf(Begin, rest, Qt::CaseInsensitive);
        const qsizetype end = begin < 0 ? -1 : text.indexOf(End, begin + Begin.size(), Qt::CaseInsensitive);
        if (end < 0)
            break;
        const QStringView before = QStringView(text).mid(rest, begin - rest);
        const QStringView span = QStringView(text).mid(begin + Begin.size(), end - begin - Begin.size());
        markup.html += Html(before) + u"<a href=\"%1\">"_s.arg(markup.spans.size()) + Html(span) + u"</a>"_s;
        markup.plain.append(before).append(span);
        markup.spans += span.toString();
        rest = end + End.size();
    }
    markup.html += Html(QStringView(text).mid(rest));
    markup.plain += QStringView(text).mid(rest);
    return markup;
}

} // namespace

LinkLabel::LinkLabel(const QString& text, QWidget* parent) : QLabel(parent) {
    TeachLinksToScreenReaders();
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
    // A document for each label would be most of what a label without spans costs.
    setTextFormat(m_spans.isEmpty() ? Qt::PlainText : Qt::RichText);
    setText(m_spans.isEmpty() ? markup.plain : markup.html);
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
