#pragma once

#include "wizard/BrenPropertySheet.h"

class ServiceClient;

/// The first steps of a backup server: says what is to be done, and marks the server as set up when finished.
class CBackupSvrConfigWizard : public CBrenPropertySheet {
    Q_OBJECT

public:
    CBackupSvrConfigWizard(const ServiceClient& service, Reader& reader, UserPrompts& prompts,
                           QWidget* parent = nullptr);
};
