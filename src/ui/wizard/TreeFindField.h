#pragma once

#include <QTimer>
#include <QWidget>

#include <vector>

#include "wizard/TreeLevels.h"

class CheckTreeView;
class QLabel;
class QLineEdit;

/// Finds the nodes of a tree, as far as it is listed, whose names hold the words. Looks in small pieces, so
/// that a large tree holds nothing up. Enter and Down go to the next one, Shift+Enter and Up back, Escape
/// clears.
class TreeFindField : public QWidget {
    Q_OBJECT

public:
    /// Whether the other nodes are hidden, but for what leads to one that was found and what is below it.
    enum class Others { Shown, Hidden };

    /// Stands above the view, which lives as long.
    TreeFindField(CheckTreeView& view, const QString& placeholder, Others others = Others::Shown,
                  QWidget* parent = nullptr);

    bool IsLooking() const { return m_at != nullptr; }
    QString Words() const;

signals:
    /// Other words are to be found, or none.
    void WordsChanged();
    /// It has looked at all that is listed.
    void LookedAtAll();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void Start();
    void LookOn();
    void HideOthers();
    void Step(int by);
    void ShowCount();

    CheckTreeView& m_view;
    QLineEdit* m_words;
    QLabel* m_count;
    QTimer m_timer;
    const TreeLevels::Node* m_at = nullptr; ///< where it goes on; none when it has looked everywhere
    std::vector<const TreeLevels::Node*> m_found;
    std::size_t m_shown = 0;
    bool m_went = false; ///< to the first one found
    Others m_others;
    bool m_hides = false; ///< nodes are hidden now
};
