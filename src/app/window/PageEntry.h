#pragma once

#include <QString>

#include <functional>

class CBrenPanel;
struct Console;

/// A section of the console: what the navigation shows of it, and how its page is made.
struct PageEntry {
    QString title;
    QString icon;
    std::function<CBrenPanel*(const Console&)> make;
};
