#pragma once

#include "development/Sweep.h"

/// What Tab reaches in the window, in its order, from the first control on.
std::vector<QWidget*> TabChain(QWidget& window);

/// In a window with head, side actions, page and foot Tab takes them in this order, and within each, as in a
/// dialog, it goes by line and then from the left. Columns beside each other may come in any order.
void FindTabJumps(QWidget& window, std::vector<SweepFind>& finds);
/// Controls that take input but not Tab.
void FindUnreached(QWidget& window, std::vector<SweepFind>& finds);
/// Controls of which a screen reader hears no name, or another role or action than they have.
void FindNameless(QWidget& window, std::vector<SweepFind>& finds);
void FindDefaultless(QWidget& window, std::vector<SweepFind>& finds);
