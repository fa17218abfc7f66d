#pragma once

#include <QList>
#include <QRect>

#include <optional>

/// The main window's place as the user's registry keeps it: screen coordinates, signed.
std::optional<QRect> ReadWindowGeometry();
void StoreWindowGeometry(const QRect& rectangle);

/// The rectangle itself when it is no larger than a screen and one shows enough of its title to grasp it;
/// otherwise moved, and shrunk where it must be, onto the screen that shows most of it, or the first.
/// `screens` are the available areas.
QRect MovedOntoScreen(QRect rectangle, const QList<QRect>& screens);
