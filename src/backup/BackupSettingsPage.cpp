#include "backup/BackupSettingsPage.h"

#include "backup/SchedulerPage.h"
#include "grid/BrenPropertyGrid.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/CommandRunner.h"
#include "page/NoticeLine.h"
#include "page/UserPrompts.h"
#include "plan/BackupRuns.h"
#include "service/ServiceExtensions.h"

#include <QLocale>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto RetryPeriod = 5s;
constexpr int LabelWidth = 222;

QStringList LinesOf(const QString& text) {
    QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    lines.removeAll("*"_L1); // stands for none
    return lines;
}

PropertyMark MarkOf(bool changed, bool known) {
    return changed ? PropertyMark::NotSaved : known ? PropertyMark::None : PropertyMark::Unknown;
}

QString WeekdayNames(const BackupSchedule& schedule) {
    QStringList names;
    for (std::size_t day = 0; day < schedule.weekdays.size(); ++day)
        if (schedule.weekdays[day])
            names.append(QLocale().dayName(day == 0 ? int(Qt::Sunday) : int(day), QLocale::ShortFormat));
    return names.join(u", "_s);
}

/// What a person begins from: what is known of the schedule, and for its start the next run.
BackupSchedule ProposalOf(const TaskRow& task, ScheduleForm form) {
    const BackupSchedule usual = DefaultSchedule(form, QDateTime::currentDateTime());
    BackupSchedule schedule = ScheduleOf(task.schedule).value_or(usual);
    const QDateTime next = ServiceTime(task.nextRun);
    schedule.date = next.isValid() ? next.date() : usual.date;
    schedule.time = next.isValid() ? next.time() : usual.time;
    return schedule;
}

} // namespace

BackupSettingsPage::BackupSettingsPage(const Console& console) : CBrenPanel(console) {
    SetHelp(
        tr("View and change the settings of this backup. What the service does not tell is shown as unknown, "
           "and left as it is unless you change it."));
}

void BackupSettingsPage::CreatePanel() {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    m_notice = new NoticeLine;
    m_notice->setContentsMargins(Look::PageMargin + 4, Look::PageMargin, Look::PageMargin + 4, 0);
    column->addWidget(m_notice);
    connect(&Commands(), &CommandRunner::BusyChanged, this, &BackupSettingsPage::ShowToolbar);
    ShowAll();
}

void BackupSettingsPage::Turn(const TaskRow& task) {
    if (m_grid && task.id == m_known.id && IsEditing())
        return; // the next refresh comes again
    const KnownBackup known = KnownOf(task.id, task.title, task.type, task.description);
    const bool same =
        known == m_known && task.nextRun == m_task.nextRun &&
        WeekdaySummary::Of(task.schedule).letters == WeekdaySummary::Of(m_task.schedule).letters;
    m_task = task;
    m_known = known;
    if (m_notice && !same)
        ShowAll();
}

bool BackupSettingsPage::IsEditing() const {
    const auto& groups = m_grid->Groups();
    return std::any_of(groups.begin(), groups.end(),
                       [](const CPropertyGroup* group) { return group->EditedRow() >= 0; });
}

void BackupSettingsPage::Reload() {
    Loader().Load(
        Lane::Service,
        [service = TheConsole().service](const std::stop_token& stop) {
            const std::optional<bool> takes = TakesConsoleRecords(service, stop);
            return Service{takes, takes ? DialogForm(service, stop) : ScheduleForm::Dialog};
        },
        [this](const Loaded<Service>& loaded) {
            if (loaded.outcome == LoadOutcome::Cancelled)
                return;
            m_asked = true;
            m_service = loaded ? *loaded : Service();
            ShowAll();
            if (m_service.takesChanges)
                Loader().StopTimer();
            else
                Loader().StartTimer(RetryPeriod, [this] { Reload(); });
        });
}

void BackupSettingsPage::Edit(const std::function<void(BackupChange&)>& edit) {
    BackupChange change = Change();
    edit(change);
    if (const QString refusal = ChangeRefusal(change); !refusal.isEmpty())
        TheConsole().prompts.ShowMessage(this, refusal);
    else if (change.IsEmpty())
        m_changes.remove(m_known.id);
    else
        m_changes[m_known.id] = change;
    ShowAll();
}

void BackupSettingsPage::ShowAll() {
    ShowNotice();
    ShowToolbar();
    std::vector<Group> groups = Groups();
    const bool sameShape = HasShape(groups);
    m_groups = std::move(groups);
    if (!sameShape)
        return Build();
    for (std::size_t group = 0; group < m_groups.size(); ++group) {
        CPropertyGroup& shown = *m_grid->Groups()[group];
        for (std::size_t entry = 0; entry < m_groups[group].entries.size(); ++entry) {
            const PropertyRow& row = m_groups[group].entries[entry].row;
            shown.SetValue(int(entry) + 1, row.value);
            shown.SetMark(int(entry) + 1, row.mark);
            shown.SetReadOnly(int(entry) + 1, row.readOnly);
        }
    }
}

void BackupSettingsPage::ShowNotice() {
    QString text;
    if (m_known.kind == BackupKind::CrossCloud)
        text = tr("A cross cloud backup has no settings that could be changed here.");
    else if (m_service.takesChanges == false)
        text = NoConsoleRecordsText();
    else if (!m_service.takesChanges && m_asked)
        text =
            tr("The service does not tell whether it takes changed settings. It is asked again by itself.");
    m_notice->SetText(text);
}

void BackupSettingsPage::ShowToolbar() {
    const bool changed = !Change().IsEmpty();
    const bool busy = Commands().IsBusy(m_known.id);
    SetToolbar({{tr("Save"), TaskCompletedIcon, [this] { Save(); }, changed && !busy && TakesChanges()},
                {tr("Discard"), CancelTaskIcon,
                 [this] {
                     m_changes.remove(m_known.id);
                     ShowAll();
                 },
                 changed && !busy},
                RefreshAction()});
}

/// Whether the grid has these rows already.
bool BackupSettingsPage::HasShape(const std::vector<Group>& groups) const {
    const auto sameEntry = [](const Entry& a, const Entry& b) {
        return a.row.label == b.row.label && a.row.opens == b.row.opens;
    };
    const auto sameGroup = [&](const Group& a, const Group& b) {
        return a.title == b.title &&
               std::equal(a.entries.begin(), a.entries.end(), b.entries.begin(), b.entries.end(), sameEntry);
    };
    return m_grid && std::equal(groups.begin(), groups.end(), m_groups.begin(), m_groups.end(), sameGroup);
}

/// A new grid in the old one's place. The focus stays where it was, as far as there is such a place.
void BackupSettingsPage::Build() {
    std::size_t focused = m_groups.size();
    int row = -1;
    for (std::size_t group = 0; m_grid && group < m_grid->Groups().size(); ++group)
        if (const CPropertyGroup* shown = m_grid->Groups()[group]; shown->hasFocus()) {
            focused = group;
            row = shown->CurrentRow();
        }
    if (m_grid) { // it may be at work up the call stack
        m_grid->hide();
        layout()->removeWidget(m_grid);
        m_grid->deleteLater();
    }
    m_grid = new CBrenPropertyGrid(TheConsole().prompts);
    for (const Group& group : m_groups) {
        CPropertyGroup* shown = m_grid->AddGroup(group.title);
        shown->SetLabelWidth(LabelWidth);
        for (const Entry& entry : group.entries)
            shown->AddRow(entry.row);
    }
    layout()->addWidget(m_grid);
    static_cast<QVBoxLayout*>(layout())->setStretchFactor(m_grid, 1);
    const auto entryOf = [this](const CPropertyGroup* group, int at) -> const Entry& {
        const auto& all = m_grid->Groups();
        const auto place = std::find(all.begin(), all.end(), group) - all.begin();
        return m_groups[std::size_t(place)].entries[std::size_t(at - 1)];
    };
    connect(m_grid, &CBrenPropertyGrid::ValueCommitted, this,
            [this, entryOf](int at, const CPropertyGroup* group, const PropertyRow& committed) {
                if (const auto set = entryOf(group, at).set)
                    Edit([&set, &committed](BackupChange& change) { set(change, committed.value); });
            });
    connect(m_grid, &CBrenPropertyGrid::ValueWanted, this, [entryOf](int at, const CPropertyGroup* group) {
        if (const auto open = entryOf(group, at).open)
            open();
    });
    if (focused < m_groups.size()) {
        CPropertyGroup* again = m_grid->Groups()[focused];
        again->SelectRow(std::min(row, again->RowCount() - 1));
        again->setFocus(Qt::OtherFocusReason);
    }
}

std::vector<BackupSettingsPage::Group> BackupSettingsPage::Groups() {
    const BackupKind kind = m_known.kind;
    std::vector<Group> groups;
    if (m_known.id.isEmpty())
        return groups;
    groups.push_back(ScheduleGroup());
    if (kind != BackupKind::CrossCloud) {
        groups.push_back(FolderGroup(tr("Source Folders"),
                                     kind == BackupKind::Application ? tr("Application") : tr("Folder"),
                                     m_known.sources, &BackupChange::sources,
                                     kind == BackupKind::Mirrored || kind == BackupKind::Folder));
        groups.push_back(FolderGroup(tr("Excluded Folders and/or Files"), tr("Excluded"), m_known.exclusions,
                                     &BackupChange::exclusions, kind != BackupKind::Application));
        groups.push_back(TargetGroup());
        if (kind != BackupKind::Application)
            groups.push_back(TextGroup(tr("Included Extensions"), tr("Extensions"), &BackupChange::types));
    }
    if (kind == BackupKind::Mirrored || kind == BackupKind::Folder) {
        groups.push_back(
            TextGroup(tr("Excluded Extensions"), tr("Extensions"), &BackupChange::excludedTypes));
        groups.push_back(TextGroup(tr("Excluded Files"), tr("Files"), &BackupChange::excludedFiles));
        groups.push_back({tr("Task Process Policies"),
                          {SwitchEntry(tr("Skip system files"), &BackupChange::skipSystem),
                           SwitchEntry(tr("Skip hidden files"), &BackupChange::skipHidden)}});
    }
    if (kind != BackupKind::Mirrored && kind != BackupKind::CrossCloud)
        groups.push_back(
            {tr("Misc"),
             {NumberEntry(tr("Retention Policy"),
                          tr("Please enter the count of incremental snapshots you want to keep (0-all):"),
                          &BackupChange::keep),
              NumberEntry(tr("Frequency of Full Backup"),
                          tr("Please enter the count of incremental backups before a full backup:"),
                          &BackupChange::fullEvery)}});
    groups.push_back(ConfigurationGroup());
    for (Group& group : groups)
        for (Entry& entry : group.entries)
            entry.row.readOnly = !TakesChanges() || (!entry.set && !entry.open);
    return groups;
}

BackupSettingsPage::Group BackupSettingsPage::ScheduleGroup() {
    const auto changed = Change().schedule;
    const auto known = ScheduleOf(m_task.schedule);
    const bool mayChange = m_known.kind != BackupKind::CrossCloud;
    Entry schedule{{.label = tr("Schedule")}};
    schedule.row.value = changed ? ConfirmedTexts(*changed, m_service.form).summary.simplified()
                         : known ? tr("%1, at a time that is not told").arg(WeekdayNames(*known))
                                 : QString();
    schedule.row.mark = MarkOf(changed.has_value(), known.has_value());
    schedule.row.opens = mayChange;
    if (mayChange)
        schedule.open = [this] { ChooseSchedule(); };
    Entry next{{.label = tr("Next Run"), .value = m_task.nextRun}};
    next.row.mark = MarkOf(false, !m_task.nextRun.isEmpty());
    return {tr("Schedule"), {schedule, next}};
}

/// A row for each, and one for another one.
BackupSettingsPage::Group BackupSettingsPage::FolderGroup(const QString& title, const QString& label,
                                                          const QString& known,
                                                          std::optional<QStringList> BackupChange::*member,
                                                          bool mayAdd) {
    const BackupChange change = Change();
    const bool changed = (change.*member).has_value();
    const QStringList before = LinesOf(known);
    const QStringList lines = (change.*member).value_or(before);
    mayAdd = mayAdd && !lines.contains("@"_L1);
    Group group{title};
    if (!changed && known.isEmpty())
        group.entries.push_back({{.label = label, .mark = PropertyMark::Unknown}});
    else if (lines.isEmpty() && !mayAdd)
        group.entries.push_back({{.label = label, .value = tr("None")}});
    for (qsizetype line = 0; line < lines.size(); ++line) {
        const bool all = lines[line] == "@"_L1;
        Entry entry{{.label = label,
                     .value = all ? tr("All selected file types cross the whole machine") : lines[line],
                     .mark = MarkOf(!before.contains(lines[line]), true)}};
        if (mayAdd)
            entry.set = [lines, line, before, member](BackupChange& made, const QString& text) {
                QStringList now = lines;
                text.isEmpty() ? now.removeAt(line) : now.replace(line, text);
                made.*member = now == before ? std::nullopt : std::optional(now);
            };
        group.entries.push_back(std::move(entry));
    }
    if (mayAdd)
        group.entries.push_back({{.label = tr("Add a Folder..."), .opens = true},
                                 {},
                                 [this, title, known, member] { AddFolder(title, known, member); }});
    return group;
}

BackupSettingsPage::Group BackupSettingsPage::TargetGroup() {
    Group group =
        FolderGroup(tr("Target Folders"), tr("Folder"), m_known.targets, &BackupChange::targets, false);
    // A record has room for one.
    if (group.entries.size() == 1) {
        group.entries.front().row.opens = true;
        group.entries.front().open = [this] { ChooseTarget(); };
    }
    return group;
}

BackupSettingsPage::Group BackupSettingsPage::TextGroup(const QString& title, const QString& label,
                                                        std::optional<QString> BackupChange::*member) const {
    const std::optional<QString> changed = Change().*member;
    Entry entry{
        {.label = label, .value = changed.value_or(QString()), .mark = MarkOf(changed.has_value(), false)},
        [member](BackupChange& made, const QString& text) { made.*member = text; }};
    return {title, {entry}};
}

BackupSettingsPage::Entry BackupSettingsPage::SwitchEntry(const QString& label,
                                                          std::optional<bool> BackupChange::*member) const {
    const std::optional<bool> changed = Change().*member;
    return {{.label = label,
             .value = !changed   ? QString()
                      : *changed ? u"True"_s
                                 : u"False"_s,
             .type = PropertyType::Boolean,
             .mark = MarkOf(changed.has_value(), false)},
            [member](BackupChange& made, const QString& text) {
                if (!text.isEmpty())
                    made.*member = text == "True"_L1;
            }};
}

BackupSettingsPage::Entry BackupSettingsPage::NumberEntry(const QString& label, const QString& question,
                                                          std::optional<int> BackupChange::*member) {
    const std::optional<int> changed = Change().*member;
    return {{.label = label,
             .value = changed ? QString::number(*changed) : QString(),
             .mark = MarkOf(changed.has_value(), false),
             .opens = true},
            {},
            [this, label, question, member] { AskNumber(label, question, member); }};
}

BackupSettingsPage::Group BackupSettingsPage::ConfigurationGroup() const {
    return {tr("Configuration"),
            {{{.label = tr("Name"), .value = m_known.name}},
             {{.label = tr("Backup Type"), .value = BackupKindText(m_known.kind)}},
             {{.label = tr("Encrypted"), .value = IsMarkedEncrypted(m_known.name) ? tr("Yes") : tr("No")}}}};
}

void BackupSettingsPage::AddFolder(const QString& caption, const QString& known,
                                   std::optional<QStringList> BackupChange::*member) {
    TheConsole().prompts.PickPath(
        this, {PickKind::Folder, caption, {}, {}},
        [this, known, member, id = m_known.id](const std::optional<QString>& folder) {
            if (!folder || folder->isEmpty() || id != m_known.id)
                return;
            Edit([&](BackupChange& change) {
                QStringList lines = (change.*member).value_or(LinesOf(known));
                if (!lines.contains(*folder))
                    change.*member = lines << *folder;
            });
        });
}

void BackupSettingsPage::ChooseSchedule() {
    const bool mirrored = m_known.kind == BackupKind::Mirrored;
    const ScheduleForm form = mirrored ? m_service.form : ScheduleForm::Server;
    const BackupSchedule before = Change().schedule.value_or(ProposalOf(m_task, form));
    auto* dialog = new CSchedulerPage(TheConsole().prompts, form, before, this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog, before, id = m_known.id] {
        BackupSchedule chosen = dialog->Schedule();
        chosen.box = before.box; // the initial run as it was
        m_changes[id].schedule = chosen;
        ShowAll();
    });
    dialog->open();
}

void BackupSettingsPage::ChooseTarget() {
    const QStringList targets = Change().targets.value_or(LinesOf(m_known.targets));
    TheConsole().prompts.PickRemoteFolder(this, {.caption = tr("Target Folder"), .start = targets.value(0)},
                                          [this, id = m_known.id](const std::optional<QString>& folder) {
                                              if (!folder || id != m_known.id)
                                                  return;
                                              Edit([&](BackupChange& change) {
                                                  change.targets = {*folder};
                                                  if (*change.targets == LinesOf(m_known.targets))
                                                      change.targets.reset();
                                              });
                                          });
}

void BackupSettingsPage::AskNumber(const QString& title, const QString& question,
                                   std::optional<int> BackupChange::*member) {
    const auto refuse = [member](const QString& text) {
        bool isNumber = false;
        BackupChange change;
        change.*member = text.toInt(&isNumber);
        return isNumber ? ChangeRefusal(change) : tr("Please enter a whole number.");
    };
    const std::optional<int> before = Change().*member;
    TheConsole().prompts.AskText(this,
                                 {.title = title,
                                  .label = question,
                                  .text = before ? QString::number(*before) : QString(),
                                  .refuse = refuse},
                                 [this, member, id = m_known.id](const std::optional<QString>& text) {
                                     if (text && id == m_known.id)
                                         Edit([&](BackupChange& change) { change.*member = text->toInt(); });
                                 });
}

void BackupSettingsPage::Save() {
    const BackupChange change = Change();
    if (change.IsEmpty() || !TakesChanges())
        return;
    CommandOrder order;
    order.send = [record = ChangeRecord(m_known, change)](const ServiceClient& service,
                                                          const std::stop_token& stop) {
        // It may be another service by now.
        const std::optional<bool> takes = TakesConsoleRecords(service, stop);
        if (takes != true)
            return ServiceAnswer{
                takes ? ServiceOutcome::OtherStatus : ServiceOutcome::Unreachable, 0, {}, {}};
        return service.SendRequest(u"/schedule/changebackup"_s, u"GET"_s, 200, record, stop);
    };
    order.notDone = tr("The settings were not saved (%1)").arg(m_known.name);
    order.failureInBox = true;
    order.after = [this, id = m_known.id, change](const CommandEnd& end) {
        if (end && m_changes.value(id) == change)
            m_changes.remove(id);
        ShowAll();
        if (end)
            emit Saved();
    };
    Commands().Run(m_known.id, order);
}
