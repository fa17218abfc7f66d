#pragma once

namespace devservice {

enum class JournalMode { Rollback, Wal };

enum class Database { Scheduler, ProcessLog, History, AuditTrace, FileIndex };
inline constexpr Database AllDatabases[] = {Database::Scheduler, Database::ProcessLog, Database::History,
                                            Database::AuditTrace, Database::FileIndex};

} // namespace devservice
