#pragma once

#include <functional>

class QWidget;
struct Console;

/// Opens the wizard that mounts a storage account over the widget's window.
void OpenMountWizard(const Console& console, QWidget* over, std::function<void(bool mounted)> done);
