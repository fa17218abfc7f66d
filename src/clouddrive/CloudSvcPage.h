#pragma once

#include "page/SettingsDialog.h"

/// Shows whether this computer is published to the cloud space, and publishes or withdraws it.
class CloudSvcPage : public SettingsDialog {
    Q_OBJECT

public:
    CloudSvcPage(const ServiceClient& service, Reader& reader, QWidget* parent = nullptr);
};
