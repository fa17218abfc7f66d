#pragma once

#include "development/Sweep.h"

/// Rests the pointer on each control, and on a row of each list, and looks whether any other control or row
/// loses its ink; a row of a list counts as a control of its own.
void FindInkLostByPointer(QWidget& window, std::vector<SweepFind>& finds);

/// Gives each control the focus by Tab and looks for the ring, and for ink that it takes from others.
void FindRingless(QWidget& window, std::vector<SweepFind>& finds);
