#pragma once

#include "lanes/Reader.h"

/// Does all work at the next turn.
Reader& AnsweringReader();
/// Takes work and never does it, for what is to be shown under way.
Reader& HangingReader();
