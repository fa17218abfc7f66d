#pragma once

#include "ctl/Command.h"

/// Lists the folder that is the only operand.
CtlExit ListDavFolder(const Invocation& invocation);
