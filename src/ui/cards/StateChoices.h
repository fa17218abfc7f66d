#pragma once

#include <QWidget>

#include <optional>
#include <vector>

class QButtonGroup;

/// A state of the entries of a page, by which some of them can be chosen. The number is the section's own.
struct CardState {
    int state;
    QString text;
};

/// A row of buttons with counts, "All 12", "Running 3", one of which is chosen.
class StateChoices : public QWidget {
    Q_OBJECT

public:
    explicit StateChoices(std::vector<CardState> states, QWidget* parent = nullptr);

    /// `countOf` tells how many entries have a state.
    void SetCounts(int all, const std::function<int(int state)>& countOf);
    /// None while all are chosen.
    std::optional<int> Chosen() const;

signals:
    void ChoiceChanged();

private:
    std::vector<CardState> m_states;
    int m_widest = 0; ///< count so far: each button has room for it, so that none moves when counts change
    QButtonGroup* m_buttons;
};
