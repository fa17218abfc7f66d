#include "platform/Memory.h"

namespace platform {

void ShareHeaps() {} // a process has one

} // namespace platform
