#pragma once

namespace platform {

/// Has all threads take their memory from few heaps, where the system would give each its own: for a program
/// whose threads wait more than they allocate. Before any other thread starts.
void ShareHeaps();

} // namespace platform
