#pragma once

#include <QString>

#include <vector>

class QWidget;

class CHeaderCtrlCl;

/// What a column asks for, in pixels.
struct ColumnRoom {
    int wanted;
    int least; ///< at most `wanted`
};

/// How wide the columns of a list are: as asked for, and no wider than the list where their titles allow;
/// from the first width on that the user chooses, as chosen. Kept in the console's own file.
class ColumnWidths {
public:
    /// Of the columns below the header in `room`; both outlive this.
    ColumnWidths(CHeaderCtrlCl& header, const QWidget& room);

    /// Of the header's next column, in pixels; `least` is what it keeps where room lacks.
    void Add(int width, int least);
    /// Takes the widths that the user gave the list of this name last time.
    void Remember(const QString& listName);
    /// Keeps those of now for the next time.
    void Keep();
    /// Lays the columns out in the room as it is now.
    void Fit();

private:
    void OnResized(int column, int width);
    int FilledColumn() const;
    ColumnRoom RoomOf(int column, int title) const;

    CHeaderCtrlCl& m_header;
    const QWidget& m_room;
    std::vector<int> m_widths; ///< as asked for or chosen
    std::vector<int> m_least;
    QString m_name;
    bool m_chosen = false;
    bool m_fitting = false;
};
