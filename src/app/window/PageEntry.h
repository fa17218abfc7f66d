#pragma once

#include <QString>

#include <functional>

class CBrenDialog;
class CBrenPanel;
class QWidget;
struct Console;

/// A section of the console: what the navigation shows of it, and how its page is made.
struct PageEntry {
    QString title;
    QString icon;
    std::function<CBrenPanel*(const Console&)> make;
};

/// Makes the dialog that a click on the status bar opens.
using DialogMaker = std::function<CBrenDialog*(const Console&, QWidget* parent)>;
