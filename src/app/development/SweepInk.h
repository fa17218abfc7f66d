#pragma once

#include <QImage>
#include <QRect>

/// The pixels that stand out from the commonest colour of `source`.
int CountInk(const QImage& source);
