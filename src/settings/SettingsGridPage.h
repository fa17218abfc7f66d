#pragma once

#include "lanes/PageLoader.h"
#include "page/BrenPanel.h"
#include "page/Console.h"
#include "settings/SettingValues.h"
#include "settings/SettingsCatalog.h"

class CBrenPropertyGrid;
class CPropertyGroup;
class NoticeLine;
struct PropertyRow;

/// A page of settings of the service in a property grid. It reads them when it is shown and writes each as
/// soon as it is changed. A setting that was never read shows its default and cannot be changed.
class CSettingsGridPage : public CBrenPanel {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds RetryPeriod{5000};

    void Reload() override { Read(); }

protected:
    /// The text that a row shows of a setting's body.
    using ShownText = QString (*)(const QByteArray& body, ServiceClient::ValueType type);

    CSettingsGridPage(const Console& console, ShownText shownText, QWidget* parent);

    void CreatePanel() override;
    virtual SettingsCatalog Catalog() const = 0;

private:
    /// A row of the grid, and the setting in it.
    struct Entry {
        Setting setting;
        CPropertyGroup* group = nullptr;
        int row = 0;
        bool wasRead = false;
    };

    void AddGroup(const SettingGroup& settings);
    void Read();
    void Apply(const SettingBodies& bodies);
    void Show(Entry& entry, const std::optional<QByteArray>& body);
    void OnCommitted(int row, CPropertyGroup* group, const PropertyRow& committed);
    bool NeedsRestart(const QString& name) const;

    ShownText m_shownText;
    CBrenPropertyGrid* m_grid;
    NoticeLine* m_defaultsNotice;
    NoticeLine* m_restartNotice;
    std::vector<Entry> m_entries;
};
