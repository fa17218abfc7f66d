#include "settings/SettingsGridPage.h"

#include "grid/BrenPropertyGrid.h"
#include "look/Look.h"
#include "page/CommandRunner.h"
#include "page/NoticeLine.h"
#include "page/SettingNews.h"
#include "service/RequestText.h"

#include <QVBoxLayout>

#include <algorithm>

namespace {

PropertyType GridType(ServiceClient::ValueType type) {
    switch (type) {
    case ServiceClient::ValueType::Integer:
        return PropertyType::Integer;
    case ServiceClient::ValueType::Boolean:
        return PropertyType::Boolean;
    case ServiceClient::ValueType::String:
        break;
    }
    return PropertyType::Text;
}

QString EditorRemark(const PropertyRow& row, const QString& text) {
    const QString refusal = LengthRefusal(row.key, text);
    return refusal.isEmpty() ? QueryRemark(text) : refusal;
}

} // namespace

SettingsGridPage::SettingsGridPage(const Console& console, ShownText shownText, QWidget* parent)
    : CBrenPanel(console, parent), m_shownText(shownText), m_grid(new CBrenPropertyGrid(console.prompts)),
      m_stateNotice(new NoticeLine), m_restartNotice(new NoticeLine) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (NoticeLine* notice : {m_stateNotice, m_restartNotice}) {
        notice->setContentsMargins(Look::PageMargin + 4, Look::PageMargin, Look::PageMargin + 4, 0);
        layout->addWidget(notice);
    }
    layout->addWidget(m_grid, 1);
    m_grid->SetEditorNote(EditorRemark);
    connect(m_grid, &CBrenPropertyGrid::ValueCommitted, this, &SettingsGridPage::OnCommitted);
    connect(&console.settingNews, &SettingNews::Written, this, &SettingsGridPage::OnWrittenElsewhere);
}

void SettingsGridPage::CreatePanel() {
    QString failure;
    for (const SettingGroup& group : Catalog(failure))
        AddGroup(group);
    m_stateNotice->SetText(failure);
    SetHelp(m_entries.empty() ? tr("There are no settings to show.")
                              : tr("Values are written to the service as soon as they are changed."));
}

void SettingsGridPage::AddGroup(const SettingGroup& group) {
    CPropertyGroup* rows = m_grid->AddGroup(group.title);
    for (const CatalogSetting& setting : group.settings) {
        const QString hint = setting.needsRestart
                                 ? tr("Settings will take effect when the application starts next time.")
                                 : QString();
        m_entries.push_back({setting, rows, rows->RowCount()});
        rows->AddRow({setting.description,
                      {},
                      setting.name,
                      GridType(setting.type),
                      hint,
                      true,
                      PropertyMark::Reading});
    }
}

void SettingsGridPage::Reload() {
    if (m_entries.empty())
        return;
    std::vector<TextSetting> settings(m_entries.size());
    std::transform(m_entries.begin(), m_entries.end(), settings.begin(),
                   [](const Entry& entry) { return entry.setting; });
    Loader().LoadEach(
        Lane::Service, std::move(settings),
        [service = TheConsole().service](const TextSetting& setting, const std::stop_token& stop) {
            const SettingValue<QString> read = ReadSetting(service, setting, stop);
            return read.silent ? std::nullopt : std::optional(read);
        },
        [this](const Loaded<Values>& values) {
            if (values)
                Apply(*values);
        });
}

void SettingsGridPage::Apply(const Values& values) {
    for (std::size_t index = 0; index < m_entries.size(); ++index)
        Show(m_entries[index], index < values.size() ? values[index] : SettingValue<QString>());
    const bool silent = values.size() < m_entries.size();
    const bool allKnown =
        std::none_of(m_entries.begin(), m_entries.end(), [](const Entry& entry) { return entry.isDefault; });
    m_stateNotice->SetText(
        allKnown ? QString()
        : silent ? tr("The service does not answer, so values in grey are defaults. They are read again by "
                      "themselves when it is back.")
                 : tr("The service could not tell all values, so those in grey are defaults. They are read "
                      "again by themselves."));
    if (allKnown)
        Loader().StopTimer();
    else
        Loader().StartTimer(RetryPeriod, [this] { Reload(); });
}

void SettingsGridPage::Show(Entry& entry, const SettingValue<QString>& read) {
    entry.group->SetReadOnly(entry.row, false);
    if (entry.unsaved || (!read.WasRead() && !entry.isDefault))
        return;
    entry.isDefault = !read.WasRead();
    entry.group->SetValue(entry.row, read.state == SettingState::Set
                                         ? m_shownText(read.value, entry.setting.type)
                                         : entry.setting.fallback);
    entry.group->SetMark(entry.row, entry.isDefault ? PropertyMark::NotRead : PropertyMark::None);
}

void SettingsGridPage::OnCommitted(int row, const CPropertyGroup* group, const PropertyRow& committed) {
    for (std::size_t index = 0; index < m_entries.size(); ++index) {
        if (m_entries[index].group == group && m_entries[index].row == row)
            Write(index, committed.value);
    }
}

void SettingsGridPage::Write(std::size_t index, const QString& value) {
    Entry& entry = m_entries[index];
    entry.isDefault = false;
    entry.group->SetValue(entry.row, value);
    if (const QString refusal = LengthRefusal(entry.setting.name, value); !refusal.isEmpty()) {
        EndWrite(index, false);
        emit Commands().Failed(tr("\"%1\" was not saved. %2").arg(entry.setting.description, refusal));
        return;
    }
    // Each write is a command of its own: the last value typed into a row is the one that stays.
    Commands().Run(
        QString::number(++m_writes),
        {.send = [setting = static_cast<const TextSetting&>(entry.setting),
                  value](const ServiceClient& service,
                         const std::stop_token& stop) { return WriteSetting(service, setting, value, stop); },
         .notDone = tr("\"%1\" was not saved").arg(entry.setting.description),
         .after = [this, index](bool done) { EndWrite(index, done); }});
    // A read that began before the write may bring, or may just have brought, the old value.
    if (Loader().IsReading())
        Reload();
}

void SettingsGridPage::EndWrite(std::size_t index, bool done) {
    Entry& entry = m_entries[index];
    entry.unsaved = !done;
    entry.group->SetMark(entry.row, done ? PropertyMark::None : PropertyMark::NotSaved);
    if (!done)
        return;
    emit TheConsole().settingNews.Written(entry.setting.name, this);
    if (entry.setting.needsRestart)
        m_restartNotice->SetText(tr("Settings will take effect when the application starts next time."));
}

void SettingsGridPage::OnWrittenElsewhere(const QString& name, const QObject* writer) {
    const bool isShown = std::any_of(m_entries.begin(), m_entries.end(),
                                     [&name](const Entry& entry) { return entry.setting.name == name; });
    if (isShown && writer != this && IsActive())
        Reload();
}
