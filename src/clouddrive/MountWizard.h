#pragma once

#include "service/MountRun.h"
#include "wizard/BrenPropertySheet.h"

#include <chrono>
#include <functional>
#include <memory>

struct Console;

/// Calls `then` after a time, unless `context` has gone.
using MountPace =
    std::function<void(QObject& context, std::chrono::milliseconds time, std::function<void()> then)>;

/// What the pages of the mount wizard share.
struct MountDraft {
    StorageProvider chosen = {}; ///< as the first page knows it
    bool fromFile = false;       ///< `chosen` was read from a file
    int choice = 0;              ///< counts the choices of a provider
    QString name = {};
    StorageProvider provider = {}; ///< as the login page has read it
    QStringList values = {};       ///< of its fields
    LoginCard card = {};
    QString acceptedCard = {};                                 ///< the document that the service has
    MountOutcome::Place lookAt = MountOutcome::Place::Nothing; ///< on the way back from a failure
};

/// Attaches a storage account to the service: its provider and name, its login, and the mount itself.
class CMountWizard : public CBrenPropertySheet {
    Q_OBJECT

public:
    CMountWizard(const Console& console, QWidget* parent = nullptr, const MountPace& pace = {});
};

/// Opens the wizard over the window of `over`. `done` is called when it has closed, unless `over` has gone.
void OpenMountWizard(const Console& console, QWidget* over, std::function<void(bool mounted)> done);
