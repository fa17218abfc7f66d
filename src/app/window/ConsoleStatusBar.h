#pragma once

#include <QFrame>

#include <array>

class QLabel;
class StatusButton;

/// The five parts at the foot of the window. A part's text is changed only when the new one differs, ignoring
/// case.
class ConsoleStatusBar : public QFrame {
    Q_OBJECT

public:
    enum Part { Blank, Version, CloudSpace, Upload, Download };

    ConsoleStatusBar();

    void SetPart(Part part, const QString& text);
    QString PartText(Part part) const;

signals:
    void CloudSpaceClicked();
    void BandwidthClicked();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QLabel* m_version;
    std::array<StatusButton*, 5> m_parts{}; ///< by part; null where nothing happens by a click
};
