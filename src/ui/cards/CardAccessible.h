#pragma once

#include <QAccessible>

/// Lets screen readers meet a list of cards as a list, its cards as items that can be pressed, expanded and
/// asked for their menu, and card buttons that say when they are busy. Once is enough.
void TeachCardsToScreenReaders();

/// Says that the states that are set in `changed` have changed.
void TellScreenReaders(QWidget& widget, QAccessible::State changed);
