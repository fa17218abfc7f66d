#include "settings/SettingsGridPage.h"

#include "grid/BrenPropertyGrid.h"
#include "look/Look.h"
#include "page/NoticeLine.h"
#include "service/RequestText.h"

#include <QVBoxLayout>

#include <algorithm>

CSettingsGridPage::CSettingsGridPage(const Console& console, ShownText shownText, QWidget* parent)
    : CBrenPanel(console, parent), m_shownText(shownText), m_grid(new CBrenPropertyGrid(console.prompts)),
      m_defaultsNotice(new NoticeLine), m_restartNotice(new NoticeLine) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (NoticeLine* notice : {m_defaultsNotice, m_restartNotice}) {
        notice->setContentsMargins(Look::PageMargin + 4, Look::PageMargin, Look::PageMargin + 4, 0);
        layout->addWidget(notice);
    }
    layout->addWidget(m_grid, 1);
    m_grid->SetEditorNote([](const PropertyRow&, const QString& text) { return QueryRemark(text); });
    connect(m_grid, &CBrenPropertyGrid::ValueCommitted, this, &CSettingsGridPage::OnCommitted);
}

void CSettingsGridPage::CreatePanel() {
    for (const SettingGroup& group : Catalog())
        AddGroup(group);
    SetHelp(m_entries.empty() ? tr("There are no settings to show.")
                              : tr("Values are written to the service as soon as they are changed."));
}

void CSettingsGridPage::AddGroup(const SettingGroup& settings) {
    CPropertyGroup* group = m_grid->AddGroup(settings.title);
    for (const Setting& setting : settings.settings) {
        const QString hint = setting.needsRestart
                                 ? tr("Settings will take effect when the application starts next time.")
                                 : QString();
        m_entries.push_back({setting, group, group->RowCount()});
        group->AddRow({setting.description, {}, setting.name, setting.type, hint, true});
    }
}

void CSettingsGridPage::Read() {
    QStringList names;
    for (const Entry& entry : m_entries)
        names.append(entry.setting.name);
    Loader().Load(
        Lane::Service,
        [service = TheConsole().service, names](std::stop_token stop) {
            return ReadSettings(service, names, stop);
        },
        [this](const Loaded<SettingReads>& loaded) {
            if (loaded.outcome != LoadOutcome::Cancelled)
                Apply(loaded);
        });
}

void CSettingsGridPage::Apply(const Loaded<SettingReads>& loaded) {
    for (std::size_t index = 0; index < m_entries.size(); ++index)
        Show(m_entries[index], loaded ? loaded->settings.at(index) : SettingRead());
    const bool allKnown =
        std::all_of(m_entries.begin(), m_entries.end(), [](const Entry& entry) { return entry.isKnown; });
    const QString why = !loaded           ? loaded.why
                        : loaded->reached ? tr("The service does not tell all settings.")
                                          : tr("The service does not answer.");
    m_defaultsNotice->SetText(
        allKnown ? QString()
                 : why + u' ' + tr("Values in grey are defaults; they are read again by themselves."));
    if (allKnown)
        Loader().StopTimer();
    else
        Loader().StartTimer(RetryPeriod, [this] { Read(); });
}

void CSettingsGridPage::Show(Entry& entry, const SettingRead& read) {
    entry.group->SetReadOnly(entry.row, false);
    if (read.state == SettingState::NotRead && entry.isKnown)
        return;
    entry.isKnown = read.state != SettingState::NotRead;
    entry.group->SetUnread(entry.row, !entry.isKnown);
    entry.group->SetValue(entry.row, read.state == SettingState::Set
                                         ? m_shownText(read.body, entry.setting.type)
                                         : entry.setting.defaultValue);
}

CSettingsGridPage::Entry& CSettingsGridPage::EntryOf(const CPropertyGroup* group, int row) {
    return *std::find_if(m_entries.begin(), m_entries.end(), [group, row](const Entry& entry) {
        return entry.group == group && entry.row == row;
    });
}

void CSettingsGridPage::OnCommitted(int row, CPropertyGroup* group, const PropertyRow& committed) {
    Loader().Command(
        Lane::Service,
        [service = TheConsole().service, committed](std::stop_token stop) {
            return WriteSetting(service, committed.key, committed.type, committed.value, stop);
        },
        [](const Loaded<ServiceAnswer>&) {});
    Entry& entry = EntryOf(group, row);
    entry.isKnown = true;
    group->SetUnread(row, false);
    // A read that began before the write may bring, or may just have brought, the old value.
    group->SetValue(row, committed.value);
    if (Loader().IsReading())
        Read();
    if (entry.setting.needsRestart)
        m_restartNotice->SetText(tr("Settings will take effect when the application starts next time."));
}
