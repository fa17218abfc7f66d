#pragma once

#include <QAccessible>

/// Lets screen readers meet a list of cards as a list, its cards as items that can be pressed, expanded and
/// asked for their menu. Once is enough.
void TeachCardsToScreenReaders();

/// Says that the states that are set in `changed` have changed.
void TellScreenReaders(QWidget& widget, QAccessible::State changed);
