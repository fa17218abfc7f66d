#pragma once

#include "plan/BackupDraft.h"
#include "service/ServiceClient.h"
#include "stores/ReadResult.h"

// How a task comes to be: one record sent, and what is known afterwards.

/// A task that the service is to make.
struct NewTask {
    QString path;      ///< of the request, as in "/schedule/backupex"
    QByteArray record; ///< in UTF-8
    QString name;      ///< by which the service will list it

    bool operator==(const NewTask&) const = default;
};

NewTask TaskOf(const BackupDraft& draft);
NewTask TaskOf(const ApplicationDraft& draft);

/// Unknown: the record was sent, and the service may or may not have taken it.
enum class Creation { Created, Refused, Unknown };

struct CreationEnd {
    Creation end = Creation::Unknown;
    QString why = {};    ///< unless it was created: a sentence or two
    bool silent = false; ///< nothing answered
};

/// Sends the record once. The service takes it by status 200 with a word in the answer.
CreationEnd CreateTask(const ServiceClient& service, const NewTask& task, std::stop_token stop = {});

/// The tasks that the service lists.
struct ListedTasks {
    struct Task {
        QString id;
        QString name;
    };
    ReadResult read = {};
    std::vector<Task> tasks = {};

    QStringList IdsOf(const QString& name) const; ///< ignoring case
};
ListedTasks ListTasks(std::stop_token stop = {});
