#include "settings/SettingsGridPage.h"

#include "grid/BrenPropertyGrid.h"
#include "look/Look.h"
#include "page/NoticeLine.h"

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
        [this](const Loaded<SettingBodies>& bodies) {
            if (bodies)
                Apply(*bodies);
        });
}

void CSettingsGridPage::Apply(const SettingBodies& bodies) {
    for (std::size_t index = 0; index < bodies.size(); ++index)
        Show(m_entries[index], bodies[index]);
    bool allRead = true;
    for (Entry& entry : m_entries) {
        allRead = allRead && entry.wasRead;
        if (!entry.wasRead)
            entry.group->SetValue(entry.row, entry.setting.defaultValue);
    }
    m_defaultsNotice->SetText(
        allRead ? QString()
                : tr("The service does not answer, so values in grey are defaults. They are read "
                     "again by themselves when it is back."));
    if (allRead)
        Loader().StopTimer();
    else
        Loader().StartTimer(RetryPeriod, [this] { Read(); });
}

void CSettingsGridPage::Show(Entry& entry, const std::optional<QByteArray>& body) {
    entry.wasRead = true;
    entry.group->SetValue(entry.row,
                          body ? m_shownText(*body, entry.setting.type) : entry.setting.defaultValue);
    entry.group->SetReadOnly(entry.row, false);
}

void CSettingsGridPage::OnCommitted(int row, CPropertyGroup* group, const PropertyRow& committed) {
    Loader().Command(
        Lane::Service,
        [service = TheConsole().service, committed](std::stop_token stop) {
            return WriteSetting(service, committed.key, committed.type, committed.value, stop);
        },
        [](const Loaded<ServiceAnswer>&) {});
    // A read that began before the write may bring, or may just have brought, the old value.
    group->SetValue(row, committed.value);
    if (Loader().IsReading())
        Read();
    if (NeedsRestart(committed.key))
        m_restartNotice->SetText(tr("Settings will take effect when the application starts next time."));
}

bool CSettingsGridPage::NeedsRestart(const QString& name) const {
    return std::any_of(m_entries.begin(), m_entries.end(), [&name](const Entry& entry) {
        return entry.setting.name == name && entry.setting.needsRestart;
    });
}
