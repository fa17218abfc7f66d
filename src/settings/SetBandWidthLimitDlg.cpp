#include "settings/SetBandWidthLimitDlg.h"

#include "page/NumberField.h"
#include "service/KnownSettings.h"

#include <QCursor>

namespace {

constexpr int RiseAboveMouse = 140;

} // namespace

CSetBandWidthLimitDlg::CSetBandWidthLimitDlg(const ServiceClient& service, Reader& reader, QWidget* parent)
    : SettingsDialog(service, reader, tr("Bandwidth Limit"), parent) {
    AddNumber(Settings::UploadBandwidth, tr("&Upload limit (KB/S)"));
    AddNumber(Settings::DownloadBandwidth, tr("&Download limit (KB/S)"));
    AddNote(tr("0 means that there is no limit."));
    move(QCursor::pos() - QPoint(0, RiseAboveMouse));
}
