#pragma once

#include "page/SettingsDialog.h"

/// Shows whether this computer is published to the cloud space, and publishes or withdraws it.
class CloudSvcPage : public CSettingsDialog {
    Q_OBJECT

public:
    CloudSvcPage(const ServiceClient& service, Reader& reader, QWidget* parent = nullptr);
};
