#include "clouddrive/MountWizard.h"

void OpenMountWizard(const Console&, QWidget*, std::function<void(bool mounted)>) {}
