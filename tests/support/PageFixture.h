#pragma once

#include "page/BrenPanel.h"
#include "support/ConsoleFixture.h"
#include "support/ServiceFixture.h"

/// First of all, so that the service runs before the parts of the console are made.
struct RunningService {
    ServiceFixture service;
};

/// A console before a running development service, for pages that do not outlive it.
template <typename PageReader = SteppingReader>
struct PageFixture : RunningService, ConsoleFixture<PageReader> {
    using ConsoleFixture<PageReader>::reader;
    using ConsoleFixture<PageReader>::frame;

    void Open(CBrenPanel& page) {
        page.Activate();
        reader.StepAll();
    }
    void Refresh(CBrenPanel& page) {
        page.Reload();
        reader.StepAll();
    }
    /// A click on the toolbar and all that follows from it.
    void Click(const QString& caption) {
        frame.Click(caption);
        reader.StepAll();
    }
};
