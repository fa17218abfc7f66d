#pragma once

#include "platform/Owned.h"

#include <unistd.h>

namespace platform {

using FileDescriptor = Owned<int, ::close, -1>;

} // namespace platform
