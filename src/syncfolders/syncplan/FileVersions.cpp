#include "syncplan/FileVersions.h"

#include <QCoreApplication>
#include <QDateTime>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Ok = 200;
constexpr qint64 Minute = 60;
constexpr qint64 Hour = 60 * Minute;
constexpr qint64 Day = 24 * Hour;
constexpr qint64 Month = 30 * Day;

struct Operation {
    char16_t code;
    const char* change;
    const char* version;
};

constexpr Operation Operations[] = {
    {u'a', QT_TRANSLATE_NOOP("FileVersions", "Added"), QT_TRANSLATE_NOOP("FileVersions", "Add")},
    {u'd', QT_TRANSLATE_NOOP("FileVersions", "Deleted"), QT_TRANSLATE_NOOP("FileVersions", "Delete")},
    {u'm', QT_TRANSLATE_NOOP("FileVersions", "Modified"), QT_TRANSLATE_NOOP("FileVersions", "Modify")},
};

QString Text(const char* words) {
    return QCoreApplication::translate("FileVersions", words);
}

QString OperationText(QChar operation, const char* Operation::*text) {
    for (const Operation& each : Operations)
        if (operation == QChar(each.code))
            return Text(each.*text);
    return {};
}

const QDateTime& StartOfStamps() {
    static const QDateTime start(QDate(1601, 1, 1), QTime(0, 0), Qt::UTC);
    return start;
}

/// None of a time that no calendar shows.
std::optional<QString> TimeText(qint64 stamp) {
    const bool before = stamp % Day < 0;
    const qint64 second = stamp % Day + (before ? Day : 0);
    const QDate date = StartOfStamps().date().addDays(stamp / Day - (before ? 1 : 0));
    if (!date.isValid())
        return {};
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", date.year(), date.month(), date.day(),
                             int(second / Hour), int(second % Hour / Minute), int(second % Minute));
}

} // namespace

qint64 CurrentStamp() {
    return StartOfStamps().secsTo(QDateTime::currentDateTimeUtc());
}

qint64 StampNumber(const QString& stamp) {
    bool isNumber = false;
    const qint64 number = stamp.toLongLong(&isNumber);
    const bool isLong = !isNumber && !stamp.isEmpty() && std::all_of(stamp.begin(), stamp.end(), [](QChar c) {
        return c >= u'0' && c <= u'9';
    });
    return isLong ? std::numeric_limits<qint64>::max() : number;
}

QString StampText(const QString& stamp, qint64 now) {
    bool isNumber = false;
    const qint64 then = stamp.toLongLong(&isNumber);
    if (!isNumber)
        return stamp;
    // A time in the future has no age, and neither has one that long before it that the age has no number.
    const bool hasAge = then <= now && then > now - Month;
    const qint64 age = hasAge ? now - then : Month;
    if (age < Minute)
        return Text(QT_TRANSLATE_NOOP("FileVersions", "%1 Second(s) Ago")).arg(age);
    if (age < Hour)
        return Text(QT_TRANSLATE_NOOP("FileVersions", "%1 Minute(s) Ago")).arg(age / Minute);
    if (age < Day)
        return Text(QT_TRANSLATE_NOOP("FileVersions", "%1 Hour(s) Ago")).arg(age / Hour);
    if (age < Month)
        return Text(QT_TRANSLATE_NOOP("FileVersions", "%1 Day(s) Ago")).arg(age / Day);
    return TimeText(then).value_or(stamp);
}

QString ChangeText(QChar operation) {
    return OperationText(operation, &Operation::change);
}

QString VersionOperationText(QChar operation) {
    return OperationText(operation, &Operation::version);
}

std::optional<FileChange> ChangeOf(const HistoryRecord& record) {
    constexpr qsizetype IdLength = sizeof VersionStoreId; // with the character behind it
    const qsizetype at = record.uri.indexOf(QLatin1String(VersionStoreId));
    const qsizetype mark = record.operation.indexOf(u'#');
    if (at < 0 || mark < 0)
        return {};
    return FileChange{record.uri.left(at) + record.uri.mid(at + IdLength), record.operation.at(0),
                      record.operation.mid(mark + 1), record.updater, record.computer};
}

std::vector<FileChange> ChangesOf(const std::vector<HistoryRecord>& records) {
    std::vector<FileChange> changes;
    changes.reserve(records.size());
    for (const HistoryRecord& record : records)
        if (auto change = ChangeOf(record))
            changes.push_back(std::move(*change));
    return changes;
}

QString FileInside(const QString& file, const QString& name) {
    const QString begin = u'/' + name + u'/';
    return file.startsWith(begin, Qt::CaseInsensitive) ? file.mid(begin.size() - 1) : QString();
}

QString FileVersion::BaseText() const {
    if (base.isEmpty())
        return {};
    return base == "0"_L1 ? Text(QT_TRANSLATE_NOOP("FileVersions", "Full"))
                          : Text(QT_TRANSLATE_NOOP("FileVersions", "Diff"));
}

QString FileVersion::Key() const {
    return base.isEmpty() || base == "0"_L1 ? stamp : stamp + u'#' + base;
}

std::vector<FileVersion> VersionsOf(const QByteArray& answer) {
    const QStringList lines = SettingText(answer).split(u'\n');
    std::vector<FileVersion> versions;
    versions.reserve(std::size_t(lines.size()));
    for (qsizetype line = 0; line < lines.size(); ++line) {
        const QStringList fields = lines[line].split(u'\t');
        if (fields.size() < 2)
            continue;
        const QChar operation = fields[0].isEmpty() ? QChar() : fields[0].at(0);
        versions.push_back({int(line) + 1, operation, fields[1], fields.value(2), fields.value(3),
                            fields.value(4), !versions.empty() && operation != u'd'});
    }
    return versions;
}

const FileVersion* FindVersion(const std::vector<FileVersion>& versions, const QString& key) {
    const auto found = std::find_if(versions.begin(), versions.end(), [&key](const FileVersion& version) {
        return version.canRevert && version.Key() == key;
    });
    return found == versions.end() ? nullptr : &*found;
}

QString ChildPath(const QString& path, const QString& name) {
    return path + u'/' + name;
}

QString ParentPath(const QString& path) {
    return path.left(std::max<qsizetype>(path.lastIndexOf(u'/'), 0));
}

std::optional<DavListing> FetchStoredFolder(const ServiceClient& service, const QString& name,
                                            const QString& path, std::stop_token stop) {
    return FetchDavListing(service, u'/' + QLatin1String(VersionStoreId) + u'/' + name + path,
                           std::move(stop));
}

ServiceAnswer RequestVersions(const ServiceClient& service, const QString& name, const QString& file,
                              std::stop_token stop) {
    const QString body = u'/' + QLatin1String(VersionStoreId) + u'/' + name + file;
    return service.SendRequest(u"/DavCache/getfilever"_s, u"GET"_s, Ok, body.toUtf8(), std::move(stop));
}

ServiceAnswer RequestRevert(const ServiceClient& service, const QString& key, std::stop_token stop) {
    return service.SendRequest(u"/DavCache/droprevert"_s, u"GET"_s, Ok, key.toUtf8(), std::move(stop));
}
