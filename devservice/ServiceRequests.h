#pragma once

#include "devservice/HttpServer.h"
#include "devservice/Settings.h"
#include "devservice/TaskEngine.h"

namespace devservice {

/// Answers the console's requests from the service's parts, which the caller has locked.
class ServiceRequests {
public:
    ServiceRequests(TaskEngine& engine, Settings& settings, std::vector<VirtualDirectory>& directories)
        : m_engine(engine), m_settings(settings), m_directories(directories) {}

    Answer Handle(const ReceivedRequest& request);

private:
    struct Parts; ///< of a request: decoded path, query and body

    Answer HandleSettings(const ReceivedRequest& request, const Parts& parts);
    Answer HandleSchedule(const Parts& parts);
    Answer HandleProfile(const Parts& parts);
    Answer VirtualDirectoryList() const;

    TaskEngine& m_engine;
    Settings& m_settings;
    std::vector<VirtualDirectory>& m_directories;
};

} // namespace devservice
