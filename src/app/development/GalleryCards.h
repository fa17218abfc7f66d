#pragma once

class CBrenPanel;
struct Console;

/// A list of sample cards in all their states, long and foreign texts among them. No page owns it yet.
CBrenPanel* MakeGalleryCards(const Console& console, int count);
