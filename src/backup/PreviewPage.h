#pragma once

#include "plan/BackupDraft.h"
#include "wizard/WizardPage.h"

#include <QTimer>

#include <memory>

class FileIndexGuide;
class LinkLabel;
class RecordView;
struct Console;
struct IndexedFileCount;
struct ListTable;

/// Shows the files of the chosen types that the file index holds, and what of them is left out.
class CPreviewPage : public WizardPage {
    Q_OBJECT

public:
    CPreviewPage(const Console& console, std::shared_ptr<BackupDraft> draft);

    QVariantList Inputs() const override { return {m_draft->filter.types}; }
    void Fill() override;
    void Leave() override;
    PageLine Line() const override;

protected:
    /// Files whose count was given up when the page was left are counted again.
    void showEvent(QShowEvent* event) override;

private:
    ListTable FileTable();
    ListTable ExclusionTable();
    void CountFiles();
    void ShowState();
    bool IsCounting() const;
    QString LinkText() const;
    void OnLink();
    void Exclude(const QStringList& entries);
    void ChangeExclusions(const QStringList& exclusions);

    const Console& m_console;
    std::shared_ptr<BackupDraft> m_draft;
    QStringList m_exclusions;
    int m_counts = 0;     ///< that were begun
    int m_changes = 0;    ///< of the exclusions
    bool m_stale = false; ///< the exclusions are other ones than those counted with
    std::shared_ptr<IndexedFileCount> m_count;
    RecordView* m_files;
    LinkLabel* m_link;
    RecordView* m_left;
    FileIndexGuide* m_guide;
    QTimer m_glance; ///< at how many files have come
};
