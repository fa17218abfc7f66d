#pragma once

#include "page/Console.h"
#include "service/ServiceClient.h"
#include "support/NotingFrame.h"
#include "support/ScriptedPrompts.h"
#include "support/SteppingReader.h"
#include "zep/LiveCounters.h"

/// The parts of a console, for panels that do not outlive it.
template <typename PageReader = SteppingReader>
struct ConsoleFixture {
    ServiceClient client;
    LiveCounters counters;
    ScriptedPrompts prompts;
    PageReader reader;
    NotingFrame frame;
    const Console console{client, counters, prompts, reader, frame};
};
