#pragma once

#include <QString>

#include <functional>
#include <vector>

class CBrenPanel;
struct Console;

/// A section of the console: what the navigation shows of it, and how its page is made.
struct PageEntry {
    QString title;
    QString icon;
    std::function<CBrenPanel*(const Console&)> make;
};

/// The sections of a mode, in the order of the navigation. The only place that knows every page.
std::vector<PageEntry> PagesOf(bool serverMode, bool withGallery);
