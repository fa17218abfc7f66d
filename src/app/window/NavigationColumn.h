#pragma once

#include "page/MainFrame.h"

#include <QFrame>
#include <QPointer>

class QListWidget;
class QVBoxLayout;

/// The left column: the program's name, the sections, and the active page's side actions.
class NavigationColumn : public QFrame {
    Q_OBJECT

public:
    static constexpr int Width = 200;

    explicit NavigationColumn(const QString& programName);

    void AddSection(const QString& title, const QString& icon);
    int SectionCount() const;
    QString SectionTitle(int index) const;
    void SelectSection(int index);

    QWidget* Sections() const;
    QWidget* Actions() const { return m_actionArea; }

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
