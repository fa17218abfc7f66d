#pragma once

#include "devservice/Task.h"

#include <stdexcept>

namespace devservice {

/// Why a record makes no backup, in a sentence.
class RecordError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// A backup as a record describes it.
struct NewBackup {
    Task task; ///< pending, with its first run; without an identifier
    std::string target;
    bool encrypted = false;
};

// Both take a record strictly apart and throw RecordError.

NewBackup ReadBackupRecord(const std::string& record, SimTime now);
NewBackup ReadApplicationRecord(const std::string& record, SimTime now);

} // namespace devservice
