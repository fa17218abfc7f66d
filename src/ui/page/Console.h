#pragma once

class LiveCounters;
class MainFrame;
class Reader;
class ServiceClient;
class SettingNews;
class UserPrompts;
struct SectionLinks;

/// The parts that pages are given. Made once in app/, and all of it outlives the pages. Databases have no
/// part here: each fetch opens its own store.
struct Console {
    ServiceClient& service;
    LiveCounters& counters;
    UserPrompts& prompts;
    Reader& reader;
    MainFrame& frame;
    SettingNews& settingNews;
    SectionLinks& links;
};
