#include "plan/BackupSets.h"

#include "service/RequestText.h"

#include <QCoreApplication>
#include <QDate>
#include <QLocale>

#include <algorithm>
#include <charconv>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Ok = 200;
constexpr int Conflict = 409;

QString Text(const char* words) {
    return QCoreApplication::translate("BackupSets", words);
}

/// The digits at the beginning of the text, as a number that an int can hold; none otherwise.
std::optional<int> TakeNumber(QStringView& text) {
    qsizetype length = 0;
    while (length < text.size() && text[length] >= u'0' && text[length] <= u'9')
        ++length;
    bool fits = false;
    const int number = text.first(length).toInt(&fits);
    text = text.sliced(length);
    return fits ? std::optional(number) : std::nullopt;
}

QDate DayOf(const Snapshot& snapshot) {
    return {snapshot.time[0], snapshot.time[1], snapshot.time[2]};
}

/// As in "3 to 9 Nov"; the year where it is not the same.
QString DaysText(const Snapshot& first, const Snapshot& last) {
    const QDate from = DayOf(first);
    const QDate to = DayOf(last);
    if (!from.isValid() || !to.isValid())
        return first == last
                   ? TimeText(first)
                   : Text(QT_TRANSLATE_NOOP("BackupSets", "%1 to %2")).arg(TimeText(first), TimeText(last));
    const QLocale locale;
    const bool oneYear = from.year() == to.year();
    const QString form = oneYear ? u"d MMM"_s : u"d MMM yyyy"_s;
    if (from == to)
        return locale.toString(to, form);
    const bool oneMonth = oneYear && from.month() == to.month();
    return Text(QT_TRANSLATE_NOOP("BackupSets", "%1 to %2"))
        .arg(locale.toString(from, oneMonth ? u"d"_s : form), locale.toString(to, form));
}

struct Listed {
    std::optional<DavListing> listing;
    ServiceAnswer answer;
};

Listed List(const ServiceClient& service, const QString& path, const std::stop_token& stop) {
    if (!ListedPathRefusal(path).isEmpty())
        return {};
    ServiceAnswer answer = RequestDavListing(service, path, stop);
    if (!answer || !answer.length)
        return {{}, std::move(answer)};
    return {ParseMultistatus(answer.body, path, HiddenEntries::Show), {}};
}

/// Why there is no listing; nothing where the service knows no such folder.
QString FailureOf(const QString& path, const ServiceAnswer& answer) {
    constexpr int NotFound = 404;
    if (QString refusal = ListedPathRefusal(path); !refusal.isEmpty())
        return refusal;
    return answer.status == NotFound ? QString() : ListingFailure(answer);
}

/// What stands between a property's first ">" at or behind a place and the next "<".
QByteArrayView ValueOf(QByteArrayView text, QByteArrayView property) {
    const qsizetype at = text.indexOf(property);
    const qsizetype begin = at < 0 ? -1 : text.indexOf('>', at) + 1;
    const qsizetype end = begin <= 0 ? -1 : text.indexOf('<', begin);
    return end < 0 ? QByteArrayView() : text.sliced(begin, end - begin);
}

/// The size that an answer tells of the file of this name, in its own element alone.
std::optional<qint64> SizeIn(QByteArrayView answer, const QString& name) {
    const QByteArray wanted = name.toUtf8();
    for (qsizetype at = answer.indexOf("displayname>"); at >= 0;
         at = answer.indexOf("displayname>", at + 1)) {
        const qsizetype begin = std::max<qsizetype>(answer.first(at).lastIndexOf("response>"), 0);
        const qsizetype end = answer.indexOf("response>", at);
        const QByteArrayView element = answer.sliced(begin, (end < 0 ? answer.size() : end) - begin);
        if (ValueOf(element, "displayname") != wanted)
            continue;
        bool isNumber = false;
        const qint64 size =
            ValueOf(element, "getcontentlength").trimmed().toByteArray().toLongLong(&isNumber);
        return isNumber ? std::optional(size) : std::nullopt;
    }
    return {};
}

} // namespace

QString BackupSetPlace::SnapshotPath(const QString& name) const {
    const bool whole = target.startsWith(u'/') && !set.isEmpty() && !name.isEmpty();
    return whole && !set.contains(u'/') && !name.contains(u'/') ? Folder() + u'/' + name : QString();
}

BackupSetPlace SetPlaceOf(const QString& taskId, const QString& type, const QString& description) {
    const qsizetype end = taskId.lastIndexOf(u'}');
    const bool braced = taskId.startsWith(u'{') && end > 0;
    return {DescriptionOf(KindOfBackup(type, description), description).targets.value(0),
            braced ? taskId.sliced(1, end - 1) : taskId};
}

bool operator<(const Snapshot& one, const Snapshot& other) {
    if (one.time != other.time)
        return one.time < other.time;
    return one.IsFull() != other.IsFull() ? one.IsFull() : one.name < other.name;
}

std::optional<Snapshot> SnapshotOf(const QString& name) {
    Snapshot snapshot{{}, name};
    QStringView rest = name;
    for (std::size_t i = 0; i < snapshot.time.size(); ++i) {
        if (i > 0 && !rest.startsWith(u'-'))
            return {};
        rest = rest.sliced(i > 0 ? 1 : 0);
        const auto number = TakeNumber(rest);
        if (!number)
            return {};
        snapshot.time[i] = *number;
    }
    return snapshot;
}

std::vector<Snapshot> SnapshotsOf(const DavListing& set) {
    std::vector<Snapshot> snapshots;
    snapshots.reserve(set.entries.size());
    for (const DavEntry& entry : set.entries)
        if (auto snapshot = entry.isFolder ? SnapshotOf(entry.name) : std::nullopt)
            snapshots.push_back(std::move(*snapshot));
    std::sort(snapshots.begin(), snapshots.end());
    return snapshots;
}

QString TimeText(const Snapshot& snapshot) {
    const auto& time = snapshot.time;
    return QString::asprintf("%04d-%02d-%02d %02d:%02d:%02d", time[0], time[1], time[2], time[3], time[4],
                             time[5]);
}

QString CreatedText(const Snapshot& snapshot) {
    return (snapshot.IsFull()
                ? Text(QT_TRANSLATE_NOOP("BackupSets", "Snapshot created at: %1 (Full)"))
                : Text(QT_TRANSLATE_NOOP("BackupSets", "Snapshot created at: %1 (Incremental)")))
        .arg(TimeText(snapshot));
}

std::vector<Snapshot> LostWithout(const std::vector<Snapshot>& deleted, const std::vector<Snapshot>& all) {
    std::vector<Snapshot> sorted = deleted;
    std::sort(sorted.begin(), sorted.end());
    std::vector<Snapshot> lost;
    bool broken = false;
    for (const Snapshot& snapshot : all) {
        if (snapshot.IsFull())
            broken = false;
        if (std::binary_search(sorted.begin(), sorted.end(), snapshot))
            broken = true;
        else if (broken)
            lost.push_back(snapshot);
    }
    return lost;
}

QString LostText(const std::vector<Snapshot>& lost, bool several) {
    if (lost.empty())
        return {};
    const QString count = lost.size() == 1
                              ? Text(QT_TRANSLATE_NOOP("BackupSets", "1 later snapshot"))
                              : Text(QT_TRANSLATE_NOOP("BackupSets", "%1 later snapshots")).arg(lost.size());
    return (several ? Text(QT_TRANSLATE_NOOP("BackupSets", "%1, %2, cannot be restored without them."))
                    : Text(QT_TRANSLATE_NOOP("BackupSets", "%1, %2, cannot be restored without it.")))
        .arg(count, DaysText(lost.front(), lost.back()));
}

QString SetTypeText(SetType type) {
    if (type == SetType::Unknown)
        return {};
    return type == SetType::Folder ? Text(QT_TRANSLATE_NOOP("BackupSets", "Folder/File"))
                                   : Text(QT_TRANSLATE_NOOP("BackupSets", "Application"));
}

SetType ReadSetType(const ServiceClient& service, const QString& setFolder, std::stop_token stop) {
    const ServiceAnswer info = service.SendRequest(u"/resources"_s + setFolder + u"/backupset.info"_s,
                                                   u"GET"_s, Ok, {}, std::move(stop));
    if (!info)
        return SetType::Unknown;
    if (info.body.contains("<BackupType>Folder</BackupType>"))
        return SetType::Folder;
    // What fills all the room that there is has said what it is by then; one that broke off before has not.
    const bool decided = info.length || std::size_t(info.body.size()) >= ServiceClient::MaxAnswer;
    return decided ? SetType::Application : SetType::Unknown;
}

SetContent ReadSet(const ServiceClient& service, const BackupSetPlace& place, const std::stop_token& stop,
                   const std::function<void(const QString& step)>& tell) {
    const QString loading = Text(QT_TRANSLATE_NOOP("BackupSets", "Loading backup set list..."));
    const auto list = [&](const QString& step, const QString& path) {
        if (tell)
            tell(step);
        return List(service, path, stop);
    };
    if (place.SnapshotPath(u"any"_s).isEmpty())
        return {};
    Listed listed = list(loading, place.Folder());
    if (!listed.listing && !stop.stop_requested()) {
        list(Text(QT_TRANSLATE_NOOP("BackupSets", "Loading backup set list (checking storage)...")),
             place.target);
        list(Text(QT_TRANSLATE_NOOP("BackupSets", "Loading backup set list (checking backup set config)...")),
             place.Container());
        listed = list(loading, place.Folder());
    }
    if (!listed.listing)
        return {false, {}, SetType::Unknown, FailureOf(place.Folder(), listed.answer)};
    SetContent content{true, SnapshotsOf(*listed.listing), SetType::Unknown, {}};
    if (!content.snapshots.empty())
        content.type = ReadSetType(service, place.Folder(), stop);
    return content;
}

std::optional<ListedFile> FindListedFile(const ServiceClient& service, const QString& path,
                                         const std::stop_token& stop) {
    const qsizetype slash = path.lastIndexOf(u'/');
    const QString folder = path.first(std::max<qsizetype>(slash, 0));
    if (!ListedPathRefusal(folder).isEmpty())
        return {};
    const ServiceAnswer answer = RequestDavListing(service, folder, stop);
    if (!answer || !answer.length)
        return {};
    const DavListing listing = ParseMultistatus(answer.body, folder, HiddenEntries::Show);
    const QString name = path.sliced(slash + 1);
    for (const DavEntry& entry : listing.entries)
        if (!entry.isFolder && entry.name == name)
            return ListedFile{SizeIn(answer.body, name), entry.lastModified};
    return {};
}

ServiceAnswer DeleteSnapshot(const ServiceClient& service, const BackupSetPlace& place,
                             const Snapshot& snapshot, const Snapshot& newest, const std::stop_token& stop) {
    const QString path = place.SnapshotPath(snapshot.name);
    ServiceAnswer refused;
    refused.outcome = ServiceOutcome::OtherStatus;
    refused.status = Conflict;
    if (path.isEmpty() || !DeletedPathRefusal(path).isEmpty())
        return refused;
    Listed set = List(service, place.Folder(), stop);
    if (!set.listing) {
        if (set.answer)
            set.answer.outcome = ServiceOutcome::Unreachable; // it broke off
        return set.answer;
    }
    const std::vector<Snapshot> present = SnapshotsOf(*set.listing);
    const std::vector<Snapshot> lost = LostWithout({snapshot}, present);
    if (!lost.empty() && newest < lost.back())
        return refused;
    if (!std::binary_search(present.begin(), present.end(), snapshot)) {
        refused.outcome = ServiceOutcome::Answered;
        return refused;
    }
    return DeleteDavPath(service, path, stop);
}
