#pragma once

#include "lanes/PageLoader.h"

#include <QWizard>

class ServiceClient;
class UserPrompts;

/// The first steps of a backup server: says what is to be done, and marks the server as set up when finished.
class CBackupSvrConfigWizard : public QWizard {
    Q_OBJECT

public:
    CBackupSvrConfigWizard(const ServiceClient& service, Reader& reader, UserPrompts& prompts,
                           QWidget* parent = nullptr);

    /// Closes only once the service has taken the mark.
    void accept() override;

private:
    const ServiceClient& m_service;
    UserPrompts& m_prompts;
    PageLoader m_loader;
};
