#pragma once

#include "benchmarks/Home.h"
#include "page/Console.h"
#include "page/MainFrame.h"
#include "page/SectionLinks.h"
#include "page/SettingNews.h"
#include "page/WindowPrompts.h"
#include "service/ServiceClient.h"
#include "zep/LiveCounters.h"

class NoFrame : public MainFrame {
public:
    void SetStatusText(const QString&) override {}
    void SetNotice(const QString&) override {}
    void SetToolbar(QWidget&, const std::vector<FrameAction>&) override {}
    void SetSideActions(QWidget&, const std::vector<FrameAction>&) override {}
};

/// The parts of a console over a service of its own.
struct ConsoleParts {
    explicit ConsoleParts(const std::string& scenario) : home(scenario) {}

    Console On(Reader& reader) { return {client, counters, prompts, reader, frame, settingNews, links}; }

    BenchHome home;
    ServiceClient client;
    LiveCounters counters;
    WindowPrompts prompts;
    NoFrame frame;
    SettingNews settingNews;
    SectionLinks links;
};
