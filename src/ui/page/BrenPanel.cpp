#include "page/BrenPanel.h"

#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/CommandRunner.h"

#include <QMouseEvent>

CBrenPanel::CBrenPanel(const Console& console, QWidget* parent)
    : QWidget(parent), m_console(console), m_loader(console.reader, *this) {
    Look::SetGround(*this, Look::Paper);
    Look::SetInk(*this, Look::Ink);
    hide();
}

CBrenPanel::~CBrenPanel() = default;

void CBrenPanel::Activate() {
    EnsureCreated();
    m_active = true;
    show();
    ShowStatus();
    ShowToolbar();
    if (!m_sideActions.empty())
        Frame().SetSideActions(*this, m_sideActions);
    Reload();
    StartPeriod();
}

void CBrenPanel::Deactivate() {
    m_active = false;
    m_loader.Rest();
    hide();
}

void CBrenPanel::Reload() {}

void CBrenPanel::PostReload() {
    QMetaObject::invokeMethod(
        this, [this] { Reload(); }, Qt::QueuedConnection);
}

void CBrenPanel::EnsureCreated() {
    if (!m_created) {
        m_created = true;
        CreatePanel();
    }
}

void CBrenPanel::CreatePanel() {}

void CBrenPanel::OnPanelClick(const QPoint&) {}

void CBrenPanel::OnPeriod() {
    Reload();
}

void CBrenPanel::ReloadEvery(std::chrono::milliseconds period,
                             std::optional<std::chrono::milliseconds> first) {
    m_period = period;
    m_firstPeriod = first;
    if (m_active)
        StartPeriod();
}

void CBrenPanel::StartPeriod() {
    if (m_period.count() > 0)
        m_loader.StartTimer(
            m_period, [this] { OnPeriod(); }, m_firstPeriod);
}

void CBrenPanel::SetHelp(const QString& text) {
    m_help = text;
    ShowStatus();
}

void CBrenPanel::TellFailure(const QString& sentence) {
    m_failure = sentence;
    ShowStatus();
}

void CBrenPanel::TellCondition(const QString& sentence) {
    if (std::exchange(m_condition, sentence) != sentence)
        ShowStatus();
}

void CBrenPanel::SetToolbar(std::vector<FrameAction> actions) {
    m_toolbar = std::move(actions);
    ShowToolbar();
}

void CBrenPanel::SetSideActions(std::vector<FrameAction> actions) {
    m_sideActions = std::move(actions);
    if (m_active)
        Frame().SetSideActions(*this, m_sideActions);
}

FrameAction CBrenPanel::RefreshAction(const QString& caption) {
    return {caption, RefreshIcon, [this] { Reload(); }};
}

void CBrenPanel::LeaveHead(bool left) {
    m_headLeft = left;
    ShowStatus();
    ShowToolbar();
}

CommandRunner& CBrenPanel::Commands() {
    if (!m_commands)
        ShareCommands(*new CommandRunner(m_console, *this));
    return *m_commands;
}

void CBrenPanel::ShareCommands(CommandRunner& commands) {
    m_commands = &commands;
    const auto tell = [this](const QString& sentence) {
        m_commandFailure = sentence;
        ShowStatus();
    };
    connect(m_commands, &CommandRunner::Failed, this, tell);
    connect(m_commands, &CommandRunner::Succeeded, this, [tell] { tell({}); });
}

void CBrenPanel::ShowStatus() {
    if (!m_active || m_headLeft)
        return;
    Frame().SetStatusText(!m_commandFailure.isEmpty() ? m_commandFailure
                          : !m_failure.isEmpty()      ? m_failure
                                                      : m_help);
    const QString failures = QStringList{m_commandFailure, m_failure}.join(u' ').trimmed();
    Frame().SetNotice(failures.isEmpty() ? m_condition : failures);
}

void CBrenPanel::ShowToolbar() {
    if (m_active && !m_headLeft)
        Frame().SetToolbar(*this, m_toolbar);
}

void CBrenPanel::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        OnPanelClick(event->position().toPoint());
}
