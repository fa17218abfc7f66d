#pragma once

#include <QColor>
#include <QFont>
#include <QRectF>
#include <QString>

class QApplication;
class QPainter;
class QWidget;

/// The console's colours, measures and type. Lengths are logical pixels.
namespace Look {

inline constexpr QColor Ink{0x00, 0x00, 0x40};
inline constexpr QColor Secondary{0x40, 0x4A, 0x5C};
inline constexpr QColor Muted{0x5A, 0x63, 0x74};
inline constexpr QColor Accent{0x1E, 0x5A, 0xA8};
inline constexpr QColor AccentTint{0xE8, 0xF0, 0xFA};
inline constexpr QColor AccentLine{0xA9, 0xC4, 0xE6};
inline constexpr QColor Paper{0xFF, 0xFF, 0xFF};
inline constexpr QColor Side{0xF5, 0xF7, 0xFA};
inline constexpr QColor ScrollGrip{0x8A, 0x94, 0xA6};
inline constexpr QColor Line{0xD5, 0xDA, 0xE1};
inline constexpr QColor BandTop{0xFB, 0xFC, 0xFD};
inline constexpr QColor BandBottom{0xEE, 0xF1, 0xF5};

inline constexpr QColor Running{0x1E, 0x5A, 0xA8};
inline constexpr QColor Good{0x1E, 0x7A, 0x34};
inline constexpr QColor Waiting{0x53, 0x62, 0x7A};
inline constexpr QColor Paused{0x8A, 0x5A, 0x00};
inline constexpr QColor Failed{0xB3, 0x26, 0x1E};

inline constexpr QColor NoticeBack{0xFF, 0xF6, 0xDC};
inline constexpr QColor NoticeLine{0xEC, 0xD9, 0xA0};
inline constexpr QColor NoticeInk{0x5C, 0x4A, 0x00};

inline constexpr QColor DotLine{0xA9, 0xB2, 0xC0};

inline constexpr QColor RefusalBack{0xFD, 0xEC, 0xEA};
inline constexpr QColor RefusalLine{0xF1, 0xB8, 0xB3};
inline constexpr QColor RefusalInk{0x8C, 0x1D, 0x18};

inline constexpr int PageMargin = 12;
inline constexpr int CardGap = 8;
inline constexpr int TextInset = 12;
inline constexpr int CornerRadius = 5;

enum TextSize { Caption = 11, Small = 12, Body = 13, Title = 18 };

/// Arial, or its metric twin where there is none.
QFont Font(TextSize size, QFont::Weight weight = QFont::Normal);

/// Of the widget's texts, and of the ground below it.
void SetInk(QWidget& widget, const QColor& colour);
void SetGround(QWidget& widget, const QColor& colour);
/// Selected rows are tinted and keep their ink, as where ticks and signs stand in them.
void TintSelection(QWidget& view);

/// A tool-tip that shows the text as it stands; empty when the text is.
QString ToolTip(const QString& text);

/// The text with a blank for each control character and line break.
QString OneLine(QStringView text);

/// Draws the text on one line, in the middle of the rectangle's height, elided where it is too long. Only the
/// start that could be seen is laid out, so a text of any length costs no more.
void DrawTextLine(QPainter& painter, const QRect& place, QStringView text,
                  Qt::Alignment alignment = Qt::AlignLeft);

/// Fills the band behind a title, with a line at its foot.
void PaintBand(QPainter& painter, const QRect& band);

/// The ring around what has the keyboard focus, drawn inside of `bounds`.
void DrawFocusRing(QPainter& painter, const QRectF& bounds, qreal radius = CornerRadius);

} // namespace Look

/// Gives the application its style, palette, font and style sheet.
void ApplyLook(QApplication& application);
