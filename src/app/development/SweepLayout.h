#pragma once

#include "development/Sweep.h"

/// Texts that do not fit into labels, buttons, tabs, column titles, fields and choices. What elides on
/// purpose and tells the whole text by tool-tip is no find.
void FindCutTexts(QWidget& window, std::vector<SweepFind>& finds);
/// Siblings that overlap, and widgets that stick out of a parent that does not scroll, or of the screen.
void FindOverlaps(QWidget& window, std::vector<SweepFind>& finds);
/// Lists without rows and pages without ink.
void FindWordless(QWidget& window, std::vector<SweepFind>& finds);

/// The visible widgets of the window, parents first.
std::vector<QWidget*> VisibleWidgets(QWidget& window);
/// As in "CBTaskMMCDlg/PageHead/CCommandButton 'Refresh...'".
QString PathOf(const QWidget& widget);
