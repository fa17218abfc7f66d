#include "platform/Memory.h"

#include <malloc.h>

namespace platform {

void ShareHeaps() {
    ::mallopt(M_ARENA_MAX, 1);
}

} // namespace platform
