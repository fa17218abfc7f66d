#pragma once

#include <QPainterPath>
#include <QStringView>

#include <optional>

/// The path that the text of an SVG attribute "d" describes, as far as our drawings use the language: all
/// commands but the quadratic ones (Q, T), and arcs of circles only. None when the text holds anything else.
std::optional<QPainterPath> ParseSvgPath(QStringView text);
