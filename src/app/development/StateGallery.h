#pragma once

class QWidget;
struct Console;

/// What is busy and what has failed, of every control that has such a state. No parent owns it yet.
QWidget* MakeStateGallery(const Console& console);
