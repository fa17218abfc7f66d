#include "taskman/RunningText.h"

#include "list/CellMarkup.h"
#include "look/IconRegistry.h"

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
    return Cell::ActivityIcon(icon, OperationWords(operation));
}

QString ShownFileName(const QString& fileName) {
    constexpr auto mark = ".BOD"_L1;
    const qsizetype part = fileName.indexOf(".BODPART_"_L1);
    if (part >= 0)
        return QString(fileName).replace(part, mark.size(), u"    "_s);
    const qsizetype end = fileName.indexOf(mark);
    return end >= 0 ? fileName.left(end) : fileName;
}

bool IsSyncWatcher(const RunningSubTask& running) {
    return running.operation.compare("Watch"_L1, Qt::CaseInsensitive) == 0;
}
