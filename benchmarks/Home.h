#pragma once

#include "devservice/DevService.h"

#include <QTemporaryDir>

/// A development service in a home of its own, to which BREN_HOME and BREN_SERVICE_PORT point from then on.
class BenchHome {
public:
    explicit BenchHome(const std::string& scenario);

    devservice::DevService& Service() { return m_service; }
    const devservice::DevService& Service() const { return m_service; }

private:
    QTemporaryDir m_folder;
    devservice::DevService m_service;
};
