#include "backup/RestoreEndLine.h"

#include "backup/UndoneFiles.h"
#include "look/Formatters.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/LinkLabel.h"
#include "page/UserPrompts.h"
#include "platform/Shell.h"
#include "taskman/TaskList.h"

#include <QHBoxLayout>
#include <QPainter>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

QString Link(const QString& words) {
    return u"<a>"_s + words + u"</a>"_s;
}

} // namespace

RestoreEndLine::RestoreEndLine(const Console& console)
    : m_console(console), m_text(new LinkLabel), m_loader(console.reader, *this) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Look::TextInset, 8, Look::TextInset, 8);
    row->addWidget(m_text);
    m_text->setFont(Look::Font(Look::Small));
    m_text->setWordWrap(true);
    connect(m_text, &LinkLabel::LinkClicked, this, &RestoreEndLine::OnLink);
    hide();
}

void RestoreEndLine::Await(const RestoreDraft& restore) {
    m_restore = restore;
    m_end = {};
    m_text->SetText(tr("The restore is under way."));
    show();
    if (isVisible())
        Ask();
}

void RestoreEndLine::showEvent(QShowEvent* event) {
    QFrame::showEvent(event);
    if (m_restore && !m_end.ended)
        Ask();
}

void RestoreEndLine::Ask() {
    m_loader.Load(
        Lane::Databases,
        [name = m_restore->name](const std::stop_token& stop) { return ReadRestoreEnd(name, stop); },
        [this](const Loaded<RestoreEnd>& loaded) {
            if (loaded && loaded->ended)
                Show(*loaded);
        });
    if (!m_loader.IsTimerRunning())
        m_loader.StartTimer(2s, [this] {
            if (!m_end.ended)
                Ask();
        });
}

void RestoreEndLine::Show(const RestoreEnd& end) {
    m_end = end;
    m_loader.StopTimer();
    const QString failed = FailedText(end.run);
    QString text = RestoredText(end.run);
    if (!failed.isEmpty())
        text.replace(failed, Link(failed));
    if (!Folder().isEmpty())
        text += u"   "_s + Link(tr("Open folder"));
    m_text->SetText(tr("The restore has ended: %1").arg(text));
}

/// Where its first component stands now; empty where that is not known.
QString RestoreEndLine::Folder() const {
    if (m_restore->elsewhere)
        return m_restore->location;
    const QString place =
        RestoredTo(*m_restore, m_sources, m_restore->components.value(0)).value_or(QString());
    return place.left(std::max(place.lastIndexOf(u'/'), place.lastIndexOf(u'\\')));
}

/// It may stand on another machine.
void RestoreEndLine::OpenFolder() {
    m_loader.Command(
        Lane::Network,
        [folder = Folder().toStdString()](const std::stop_token&) { return platform::OpenInShell(folder); },
        [this, folder = Folder()](const Loaded<bool>& opened) {
            if (!opened || !*opened)
                m_console.prompts.ShowMessage(this, tr("\"%1\" cannot be opened.").arg(Isolated(folder)));
        });
}

void RestoreEndLine::OnLink(int span) {
    if (m_text->Spans().value(span) == tr("Open folder")) {
        OpenFolder();
        return;
    }
    TaskRow task;
    task.id = m_end.taskId;
    task.title = m_restore->name;
    OpenUndoneFiles(m_console, *this, task, UndoneFiles::Failed);
}

void RestoreEndLine::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), Look::AccentTint);
    painter.setPen(Look::AccentLine);
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
}
