#pragma once

#include "page/MainFrame.h"

#include <QFrame>
#include <QPointer>

class QListWidget;
class QVBoxLayout;

/// The left column: the program's name, the sections, and the active page's side actions.
class CNavigationColumn : public QFrame {
    Q_OBJECT

public:
    explicit CNavigationColumn(const QString& programName);

    void AddSection(const QString& title, const QString& icon);
    int SectionCount() const;
    QString SectionTitle(int index) const;
    int CurrentSection() const; ///< -1 when none is chosen
    void SelectSection(int index);

    void SetActions(QWidget& owner, const std::vector<FrameAction>& actions);

signals:
    void SectionChosen(int index);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QListWidget* m_sections;
    QWidget* m_actionArea;
    QVBoxLayout* m_actions;
};
