#pragma once

#include "wizard/TreeLevels.h"

#include <QWidget>

class CheckTreeView;
class LinkLabel;
class TreeFindField;

/// A field that finds names in a tree, and lists what is not listed yet, a level at a time, as long as there
/// are words to find.
class ListOn : public QWidget {
    Q_OBJECT

public:
    /// Stands above the view, which lives as long.
    explicit ListOn(CheckTreeView& view, QWidget* parent = nullptr);

private:
    void GoOn();
    void Stop();
    void ShowProgress(const QString& folder);

    CheckTreeView& m_view;
    TreeFindField* m_find;
    LinkLabel* m_progress;
    bool m_stopped = false; ///< until there are other words
    int m_listed = 0;       ///< folders, for these words
};
