#pragma once

#include "page/Console.h"
#include "service/ServiceClient.h"
#include "support/NotingFrame.h"
#include "support/ScriptedPrompts.h"
#include "support/ServiceFixture.h"
#include "support/SteppingReader.h"
#include "zep/LiveCounters.h"

/// A console before a running development service, for pages that do not outlive it.
template <typename PageReader = SteppingReader>
struct PageBench {
    ServiceFixture service;
    ServiceClient client;
    LiveCounters counters;
    ScriptedPrompts prompts;
    PageReader reader;
    NotingFrame frame;
    const Console console{client, counters, prompts, reader, frame};

    void Open(CBrenPanel& page) {
        page.Activate();
        reader.StepAll();
    }
    void Refresh(CBrenPanel& page) {
        page.OnCommand(Command::Refresh);
        reader.StepAll();
    }
    /// A click on the toolbar and all that follows from it.
    void Click(const QString& caption) {
        frame.Click(caption);
        reader.StepAll();
    }
};
