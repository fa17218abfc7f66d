#pragma once

#include "lanes/PageLoader.h"
#include "plan/BackupFigures.h"

#include <QFrame>

class QLabel;
class QPlainTextEdit;
class WorkBar;
struct Console;

/// Says how much a backup of folders will be, while a lane counts it and afterwards. It counts as long as it
/// is shown and holds nothing up; shown again, it begins anew what was broken off.
class CountView : public QFrame {
    Q_OBJECT

public:
    explicit CountView(const Console& console, QWidget* parent = nullptr);

    /// What is to be counted. The same again changes nothing.
    void Count(const BackupDraft& draft);
    /// As far as it has been counted.
    const BackupFigures& Figures() const { return m_figures; }

signals:
    /// The figures are other ones.
    void Counted();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void Start();
    void ReadQuota();
    void TakeFigures(BackupFigures figures);
    void ShowFigures();

    const Console& m_console;
    BackupDraft m_draft; ///< of which only sources, exclusions and filter count
    BackupFigures m_figures;
    std::optional<qint64> m_free; ///< octets in the account, where the service tells
    std::shared_ptr<FiguresNote> m_note;
    PageLoader m_counting;
    PageLoader m_quota;
    QTimer m_look; ///< reads the note
    QLabel* m_total;
    QLabel* m_beside;
    WorkBar* m_bar;
    QPlainTextEdit* m_details;
};
