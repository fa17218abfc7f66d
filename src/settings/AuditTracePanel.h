#pragma once

#include "page/BrenPanel.h"

#include <array>

class AuditFilterForm;
class QCheckBox;
class QLabel;
class RecordView;
struct AuditFilter;

/// The service's audit trace as a user asks for it. Only what is asked for is read.
class CAuditTracePanel : public CBrenPanel {
    Q_OBJECT

public:
    explicit CAuditTracePanel(const Console& console, QWidget* parent = nullptr);

    /// Asks for all between the two times, which are as in the rows. The panel is shown.
    void ShowTraces(const QString& from, const QString& to);

    void Activate() override;
    /// Asks again.
    void Reload() override;
    bool CanFind() const override { return m_view; }
    void OpenFind() override;

protected:
    void CreatePanel() override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    struct Asked;

    QWidget* MakeLine();
    void Query();
    void GoToError(bool before);
    void ShowState();
    void ShowCounts();
    QString Line() const;
    void HideLevels();

    AuditFilterForm* m_filter = nullptr;
    QLabel* m_line = nullptr;
    std::array<QCheckBox*, 3> m_levels{}; ///< in the order of ShownLevels
    RecordView* m_view = nullptr;
    std::shared_ptr<Asked> m_asked; ///< the last query; null before the first
    int m_queries = 0;
    bool m_entering = false;
    QTimer m_countTimer; ///< while a query runs
};
