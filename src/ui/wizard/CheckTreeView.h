#pragma once

#include "wizard/CheckTreeModel.h"

#include <QTreeView>

/// Shows a CheckTreeModel, which lives as long: opening a node lists its level. Enter opens, closes or ticks,
/// Space ticks or, where nothing can be ticked, selects, F5 lists the present level anew; none of them
/// presses a button of the window.
class CheckTreeView : public QTreeView {
    Q_OBJECT

public:
    explicit CheckTreeView(CheckTreeModel& model, QWidget* parent = nullptr);

    CheckTreeModel& Tree() const { return m_tree; }
    /// Opens what is above the node, makes it the present one and brings it into view.
    void GoTo(const TreeLevels::Node& node);
    /// The level that is open below the present row, or the one that it stands in.
    void ListPresentLevelAgain();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    /// Says that the first level is being listed, or that there is none, as long as there is no row.
    void paintEvent(QPaintEvent* event) override;

private:
    void OnEnter(const QModelIndex& index);

    CheckTreeModel& m_tree;
};
