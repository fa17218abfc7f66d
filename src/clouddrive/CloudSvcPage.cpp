#include "clouddrive/CloudSvcPage.h"

#include "service/KnownSettings.h"

CloudSvcPage::CloudSvcPage(const ServiceClient& service, Reader& reader, QWidget* parent)
    : SettingsDialog(service, reader, tr("Cloud Space"), parent) {
    AddCheck(Settings::PublishedToCloudSVC, tr("This computer is in the &cloud space"));
    AddNote(tr("A computer in the cloud space can be reached by its owner's other computers. The background "
               "service keeps it there until it is withdrawn."));
}
