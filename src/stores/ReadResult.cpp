#include "stores/ReadResult.h"

#include <QCoreApplication>

QString ReadResult::Sentence() const {
    const char* text = nullptr;
    switch (outcome) {
    case ReadOutcome::Done:
    case ReadOutcome::Stopped:
        return {};
    case ReadOutcome::Refused:
        return detail;
    case ReadOutcome::Unavailable:
        return QCoreApplication::translate("ReadResult", "The service does not tell what it is doing now.");
    case ReadOutcome::Missing:
        text = QT_TRANSLATE_NOOP("ReadResult", "The database does not exist: %1");
        break;
    case ReadOutcome::Busy:
        text = QT_TRANSLATE_NOOP("ReadResult", "The database is locked by another program: %1");
        break;
    case ReadOutcome::HotJournal:
        text = QT_TRANSLATE_NOOP("ReadResult",
                                 "The database waits for the service to finish an interrupted change: %1");
        break;
    case ReadOutcome::Damaged:
        text = QT_TRANSLATE_NOOP("ReadResult", "The file is damaged or no database: %1");
        break;
    case ReadOutcome::OtherSchema:
        text = QT_TRANSLATE_NOOP("ReadResult", "The database is of another version: %1");
        break;
    case ReadOutcome::NoRight:
        text = QT_TRANSLATE_NOOP("ReadResult", "The database cannot be used without the right to %1");
        break;
    case ReadOutcome::BadStatement:
        text = QT_TRANSLATE_NOOP("ReadResult", "The filter could not be understood: %1");
        break;
    case ReadOutcome::Failed:
        text = QT_TRANSLATE_NOOP("ReadResult", "The database cannot be read: %1");
        break;
    }
    return QCoreApplication::translate("ReadResult", text).arg(detail);
}
