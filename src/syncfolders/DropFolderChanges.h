#pragma once

#include "page/BrenPanel.h"

class RecordView;

/// The latest changes that the service noted for a sync folder.
class CDropFolderChanges : public CBrenPanel {
    Q_OBJECT

public:
    /// `showVersions` is called with the path of a file in the folder.
    CDropFolderChanges(const Console& console, QString name,
                       std::function<void(const QString& file)> showVersions);

    void Reload() override;
    bool CanFind() const override { return m_view; }
    void OpenFind() override;

protected:
    void CreatePanel() override;
    void OnPeriod() override;

private:
    void ShowState();

    QString m_name;
    std::function<void(const QString& file)> m_showVersions;
    RecordView* m_view = nullptr;
};

/// Repaints the view once a minute, since what it shows of times grows older without a read.
void RepaintByTheMinute(RecordView& view);
