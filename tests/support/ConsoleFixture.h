#pragma once

#include "page/Console.h"
#include "page/SectionLinks.h"
#include "page/SettingNews.h"
#include "service/ServiceClient.h"
#include "support/RecordingFrame.h"
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
    RecordingFrame frame;
    SettingNews settingNews;
    SectionLinks links;
    const Console console{client, counters, prompts, reader, frame, settingNews, links};
};
