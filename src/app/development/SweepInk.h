#pragma once

#include <QImage>
#include <QRect>

/// The pixels that stand out from the image's commonest colour.
int CountInk(const QImage& image);
