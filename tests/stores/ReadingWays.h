#pragma once

#include "Reading.h"
#include "stores/AuditTraceStore.h"
#include "stores/FileIndexStore.h"
#include "stores/HistoryStore.h"
#include "stores/ProcessLogStore.h"
#include "stores/SubTaskStore.h"

using File = devservice::Database;

/// One way to read a database: the rows it gives as text, and how it went.
struct Reading {
    QStringList rows;
    ReadResult read;
};

/// A callback that adds this text of each row.
template <typename Record>
auto Into(QStringList& rows, QString Record::*text) {
    return [&rows, text](const Record& row) {
        rows += row.*text;
        return true;
    };
}

struct ReadingWay {
    const char* name;
    std::optional<File> database; ///< none: the sub-tasks of the task
    QString traceOfPrepare;
    bool prepareIsTraced;
    Reading (*readWith)(std::stop_token, const OpenRule&);
};

inline const ReadingWay Ways[] = {
    {"tasks", File::Scheduler,
     QStringLiteral("[Scheduler]Create delete statement failed:no such table: Scheduler"), true,
     [](std::stop_token stop, const OpenRule& rule) {
         const TaskNames tasks = TaskNames::Read(stop, rule);
         return Reading{tasks.names, tasks.read};
     }},
    {"one task", File::Scheduler,
     QStringLiteral("[Scheduler]Create delete statement failed:no such table: Scheduler"), true,
     [](std::stop_token stop, const OpenRule& rule) {
         const TaskLookup lookup = GetTaskInfo(TaskIdText, stop, rule);
         return Reading{lookup.found ? QStringList(lookup.task.nextRun) : QStringList(), lookup.read};
     }},
    {"sub-tasks",
     {},
     QStringLiteral("[SubTaskDBWorker]Create delete statement failed:no such table: SubTaskDBWorker"),
     true,
     [](std::stop_token stop, const OpenRule& rule) {
         Reading reading;
         reading.read = EnumSubTasks(TaskIdText, 0, 1, Into(reading.rows, &SubTaskRecord::text2), stop, rule);
         return reading;
     }},
    {"process log", File::ProcessLog,
     QStringLiteral("[TaskProcessLog]Create enum statement failed:no such table: TaskProcessLog"), true,
     [](std::stop_token stop, const OpenRule& rule) {
         Reading reading;
         std::vector<ProcessLogRecord> list;
         reading.read = FillProcessLog(TaskIdText, list, stop, rule);
         for (const ProcessLogRecord& each : list)
             reading.rows += each.stopReason;
         return reading;
     }},
    {"history", File::History,
     QStringLiteral("[History]Create Insert statement failed:no such table: History"), true,
     [](std::stop_token stop, const OpenRule& rule) {
         Reading reading;
         std::vector<HistoryRecord> list;
         reading.read = FillHistory(HistoryView::ChangeList, QStringLiteral("V"), list, stop, rule);
         for (const HistoryRecord& each : list)
             reading.rows += each.uri;
         return reading;
     }},
    {"audit trace", File::AuditTrace, QStringLiteral("[AuditTrace]"), false,
     [](std::stop_token stop, const OpenRule& rule) {
         Reading reading;
         reading.read = AuditTraceStore(stop, rule)
                            .EnumTaskTraces(QStringLiteral("KEY"), Into(reading.rows, &AuditRecord::trace));
         return reading;
     }},
    {"file index", File::FileIndex, QStringLiteral("[FileDB]Create FileDB Index2:no such table: FileDB"),
     true,
     [](std::stop_token stop, const OpenRule& rule) {
         Reading reading;
         reading.read =
             FileIndexStore(stop, rule).EnumFilesByExt(QStringLiteral("txt"), [&](const QString& path) {
                 reading.rows += path;
                 return true;
             });
         return reading;
     }},
};

/// Two rows for each way of reading.
inline void Fill(ServiceFixture& service) {
    service->PutTask(devservice::MakeTask(TaskId, "one"));
    service->PutTask(devservice::MakeTask("{2}", "two"));
    service->PutSubTasks(TaskId,
                         {devservice::MakeSubTask(1, "PUT", "a"), devservice::MakeSubTask(2, "PUT", "b")});
    const std::string id = TaskId;
    service->Execute(service->DatabaseFile(File::ProcessLog), "INSERT INTO TaskProcessLog VALUES(NULL,'" +
                                                                  id + "','1','2','first',3,1,3),(NULL,'" +
                                                                  id + "','4','5','second',3,0,3)");
    service->Execute(service->DatabaseFile(File::History),
                     "INSERT INTO History VALUES('b','a#1','U','C','V',2),('a','m#2','U','C','V',1)");
    service->AddAuditRows({{0, "$$KEY$ b"}, {1, "$$KEY$ a"}});
    service->Execute(service->DatabaseFile(File::FileIndex),
                     "INSERT INTO FileDB VALUES('/a.txt','txt',1,''),('/b.txt','txt',1,'')");
}
