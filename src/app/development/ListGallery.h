#pragma once

class CBrenListCtrl;
class QWidget;
class UserPrompts;

/// Gives the list columns and rows with every kind of cell.
void FillCellGallery(CBrenListCtrl& list);

/// A record table with its find bar, a fixed table, a list without rows and one with the toolkit's header.
QWidget* MakeListGallery(UserPrompts& prompts, QWidget* parent);

/// A sheet of every icon with its name, as a widget of its own.
QWidget* MakeIconSheet(QWidget* parent);
