#include "platform/Elevation.h"
#include "platform/windows/WideText.h"

#include <windows.h>

#include <shellapi.h>

namespace platform {

bool MayElevate() {
    return true;
}

bool RelaunchElevated(const std::filesystem::path& executable, const std::vector<std::string>& arguments) {
    const std::wstring parameters = CommandLine(arguments);
    SHELLEXECUTEINFOW launch = {};
    launch.cbSize = sizeof launch;
    launch.fMask = SEE_MASK_NOASYNC | SEE_MASK_FLAG_NO_UI;
    launch.lpVerb = L"runas";
    launch.lpFile = executable.c_str();
    launch.lpParameters = parameters.c_str();
    launch.nShow = SW_SHOWNORMAL;
    return ::ShellExecuteExW(&launch) != 0;
}

} // namespace platform
