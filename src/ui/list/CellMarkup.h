#pragma once

#include <QString>
#include <QStringView>

enum class CellKind { Plain, Icon, Progress, Struck, Swatch };
enum class SwatchColour { Green, Red, Yellow };

/// What a cell's text means. The views reach into the text that was parsed and live as long as it does.
struct CellMarkup {
    CellKind kind = CellKind::Plain;
    /// The text of plain and struck cells; what follows the first "@@" of icon and progress cells.
    QStringView text;
    bool hasCaption = false; ///< an icon or progress cell with "@@"
    bool ellipsis = false;   ///< a plain cell with "..." somewhere
    int icon = 0;            ///< a number of the icon registry, 0 for none
    quint32 position = 0;    ///< never above `maximum`
    quint32 maximum = 0;     ///< 0: nothing to draw
    SwatchColour swatch = SwatchColour::Green;

    static CellMarkup Parse(QStringView text);
    static CellMarkup Parse(QString&& gone) = delete;

    /// What stands in a progress bar.
    QString Caption() const;

    /// What the cell says without its markup, for screen readers, search, copies and exports.
    QString Words() const;
};

/// The words of a cell's text.
inline QString WordsOfCell(QStringView text) {
    return CellMarkup::Parse(text).Words();
}

/// Writers of cells.
namespace Cell {

/// Data, which is shown as it stands also when it begins like markup.
QString Plain(const QString& data);
/// An icon of the registry; the words are heard and copied in its place, without a "Click to " before them.
QString Icon(int icon, const QString& words);
/// The icon of what is being done: "Uploading" is heard as "Uploading...".
QString ActivityIcon(int icon, const QString& activity);
/// A bar; empty when there is nothing to do. Numbers beyond 31 bits are shown in coarser steps.
QString Progress(quint64 done, quint64 total, const QString& caption = {});
QString Swatch(SwatchColour colour);

} // namespace Cell
