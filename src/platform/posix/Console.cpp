#include "platform/Console.h"

namespace platform {

void PrepareConsole() {} // the system changes nothing on its own

} // namespace platform
