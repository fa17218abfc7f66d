#pragma once

class QKeyEvent;

inline constexpr int DeleteKey = 0x2E;

/// The Windows code of the event's key, on every system; 0 for a key that has none.
int VirtualKeyOf(const QKeyEvent& event);

/// The flags that go with a released key: that it was down and is up now, and bit 13 with the Alt key.
unsigned ReleasedKeyFlags(const QKeyEvent& event);
