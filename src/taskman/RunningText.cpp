#include "taskman/RunningText.h"

#include "look/IconRegistry.h"

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

QString OperationWords(const QString& operation) {
    return operation == "Upload"_L1     ? u"Uploading"_s
           : operation == "Download"_L1 ? u"Downloading"_s
                                        : operation;
}

QString OperationCell(const QString& operation) {
    const int icon = operation == "Upload"_L1     ? UploadIcon
                     : operation == "Download"_L1 ? DownloadIcon
                                                  : OtherOperationIcon;
    return u"#ICON:%1#@@%2..."_s.arg(icon).arg(OperationWords(operation));
}

QString ShownFileName(const QString& fileName) {
    constexpr auto mark = ".BOD"_L1;
    const qsizetype part = fileName.indexOf(".BODPART_"_L1);
    if (part >= 0)
        return QString(fileName).replace(part, mark.size(), u"    "_s);
    const qsizetype end = fileName.indexOf(mark);
    return end >= 0 ? fileName.left(end) : fileName;
}

QString ProgressCell(quint64 done, quint64 total) {
    if (total == 0)
        return {};
    done = std::min(done, total);
    while (total > quint64(std::numeric_limits<qint32>::max())) {
        done >>= 1;
        total >>= 1;
    }
    return u"#Progress:%1 %2"_s.arg(done).arg(total);
}

QString CountCell(quint64 count) {
    return QString::number(static_cast<qint32>(static_cast<quint32>(count)));
}

bool IsSyncWatcher(const RunningSubTask& running) {
    return running.operation.compare("Watch"_L1, Qt::CaseInsensitive) == 0;
}
