#pragma once

class CBrenPanel;
class MainFrame;

/// A list of sample cards in all their states, long and foreign texts among them. No page owns it yet.
CBrenPanel* MakeGalleryCards(MainFrame& frame, int count);
