#pragma once

#include <QTreeWidget>

/// A list whose rows have boxes to tick, with columns. Space and Enter tick the selected rows alike, Ctrl+A
/// selects all of them; no key presses a button of the window.
class CheckList : public QTreeWidget {
    Q_OBJECT

public:
    /// Titles of columns with their widths in pixels; the last one takes what is left.
    CheckList(const QString& name, const std::vector<std::pair<QString, int>>& columns,
              QWidget* parent = nullptr);

    /// The new row's number, by which it is known for good.
    int AddRow(const QStringList& cells, bool ticked);
    void SetTicked(int row, bool ticked);
    bool IsTicked(int row) const;
    std::vector<int> TickedRows() const;

signals:
    void Edited();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void ToggleSelected();
};
