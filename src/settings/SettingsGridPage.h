#pragma once

#include "grid/PropertyModel.h"
#include "page/BrenPanel.h"
#include "service/SettingsCatalog.h"

class CBrenPropertyGrid;
class CPropertyGroup;
class NoticeLine;

/// A page of settings of the service in a property grid. It reads them when it is shown and when they were
/// written elsewhere, and writes each as soon as it is changed. One that was never read shows its default.
class SettingsGridPage : public CBrenPanel {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds RetryPeriod{5000};

    void Reload() override;

protected:
    /// The text that a row shows of a setting's value.
    using ShownText = QString (*)(const QString& value, ServiceClient::ValueType type);

    SettingsGridPage(const Console& console, ShownText shownText, QWidget* parent);

    void CreatePanel() override;
    /// `failure` says why the catalog is empty.
    virtual SettingsCatalog Catalog(QString& failure) const = 0;

private:
    /// A row of the grid, and the setting in it.
    struct Entry {
        CatalogSetting setting;
        CPropertyGroup* group = nullptr;
        int row = 0;
        bool isDefault = true; ///< neither read nor changed yet
        bool unsaved = false;  ///< what was typed is kept until it is saved
    };
    using Values = std::vector<SettingValue<QString>>;

    void AddGroup(const SettingGroup& group);
    void Apply(const Values& values);
    void Show(Entry& entry, const SettingValue<QString>& read);
    void OnCommitted(int row, const CPropertyGroup* group, const PropertyRow& committed);
    void Write(std::size_t index, const QString& value);
    void EndWrite(std::size_t index, bool done);
    void OnWrittenElsewhere(const QString& name, const QObject* writer);

    ShownText m_shownText;
    CBrenPropertyGrid* m_grid;
    NoticeLine* m_stateNotice;
    NoticeLine* m_restartNotice;
    std::vector<Entry> m_entries;
    int m_writes = 0; ///< so far
};
