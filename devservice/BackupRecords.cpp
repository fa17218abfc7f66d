#include "devservice/BackupRecords.h"

#include "devservice/WireText.h"

#include <QByteArray>
#include <QStringDecoder>

#include <algorithm>
#include <charconv>

namespace devservice {

namespace {

constexpr char EncryptedMark[] = "[Encrypted]";
constexpr char AllTypes[] = "@";
constexpr char None[] = "*";
constexpr int Most = 999'999'999;

using Fields = std::vector<std::string>;

void Demand(bool holds, const std::string& otherwise) {
    if (!holds)
        throw RecordError(otherwise);
}

Fields Split(const std::string& text, char separator) {
    Fields fields{std::string()};
    for (const char c : text) {
        if (c == separator)
            fields.emplace_back();
        else
            fields.back() += c;
    }
    return fields;
}

Fields FieldsOf(const std::string& record, size_t count) {
    QStringDecoder decoder(QStringConverter::Utf8);
    const QString decoded = decoder(QByteArray::fromStdString(record));
    Demand(!decoder.hasError() && !decoded.contains(QChar(0)), "it is no text of UTF-8");
    Fields fields = Split(record, '\t');
    Demand(fields.size() == count,
           "it has " + std::to_string(fields.size()) + " fields and not " + std::to_string(count));
    return fields;
}

/// A decimal number without leading zeros.
int Number(const std::string& text, int least, int most, const std::string& what) {
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const bool plain = error == std::errc() && std::to_string(number) == text;
    Demand(plain && number >= least && number <= most, what + " \"" + text + "\" is no number from " +
                                                           std::to_string(least) + " to " +
                                                           std::to_string(most));
    return number;
}

bool Flag(const std::string& text, const std::string& what) {
    return Number(text, 0, 1, what) == 1;
}

std::string Name(const std::string& field, bool encrypted) {
    Demand(!field.empty() && field.find('\n') == std::string::npos, "its name is empty or has several lines");
    const std::string mark = EncryptedMark;
    const bool marked =
        field.size() > mark.size() && field.compare(field.size() - mark.size(), mark.size(), mark) == 0;
    Demand(marked || !encrypted, "its name lacks the mark of an encrypted backup");
    return field;
}

Fields Lines(const std::string& field, const std::string& what) {
    Fields lines = Split(field, '\n');
    for (const std::string& line : lines)
        Demand(!line.empty() && line.back() != '\r', what + " hold an empty line, or one of another system");
    return lines;
}

struct RecordSchedule {
    Schedule schedule;
    bool box = false;
};

/// Fifteen numbers with a blank between, and a line feed.
RecordSchedule ReadSchedule(const std::string& field, bool continuousToo) {
    Demand(!field.empty() && field.back() == '\n', "its schedule does not end with a line feed");
    const Fields words = Split(field.substr(0, field.size() - 1), ' ');
    Demand(words.size() == 15, "its schedule has " + std::to_string(words.size()) + " numbers and not 15");
    const auto number = [&](size_t at, int least, int most) {
        return Number(words[at], least, most, "in its schedule");
    };
    RecordSchedule result;
    Schedule& schedule = result.schedule;
    schedule.kind = ScheduleKind::Backup;
    schedule.mode = static_cast<ScheduleMode>(number(0, continuousToo ? 0 : 1, 2));
    const auto month = static_cast<unsigned>(number(2, 1, 12));
    const auto day = static_cast<unsigned>(number(3, 1, 31));
    const std::chrono::year_month_day date{std::chrono::year(number(1, 1000, 9999)),
                                           std::chrono::month(month), std::chrono::day(day)};
    Demand(date.ok(), "its schedule begins on a day that is not");
    schedule.start = std::chrono::sys_days(date) + std::chrono::hours(number(4, 0, 23)) +
                     std::chrono::minutes(number(5, 0, 59)) + std::chrono::seconds(number(6, 0, 59));
    for (size_t i = 0; i < schedule.weekdays.size(); ++i)
        schedule.weekdays[i] = Flag(words[7 + i], "the weekday");
    result.box = Flag(words[14], "the box");
    return result;
}

/// Included and excluded extensions, excluded files, and whether system and hidden files are skipped.
void CheckFilter(const std::string& field, bool byType) {
    const Fields lines = Lines(field, "its filter settings");
    Demand(lines.size() == 5, "its filter settings have " + std::to_string(lines.size()) + " lines");
    Demand(lines[3] == "Sys" || lines[3] == "NoSys", "its filter settings say \"" + lines[3] + '"');
    Demand(lines[4] == "Hidden" || lines[4] == "NoHidden", "its filter settings say \"" + lines[4] + '"');
    const bool plain = lines[1] == None && lines[2] == None && lines[3] == "NoSys" && lines[4] == "NoHidden";
    Demand(!byType || plain, "a backup by file type has no filter but its types");
}

NewBackup Make(const std::string& name, const char* type, const std::string& description,
               const RecordSchedule& when, SimTime now) {
    NewBackup made;
    Task& task = made.task;
    task.name = name;
    task.type = type;
    task.description = description;
    task.schedule = when.schedule;
    task.created = now;
    const bool mirrored = SameName(type, "Backup");
    const bool skipsFirst = mirrored ? when.schedule.mode != ScheduleMode::Continuous || when.box : !when.box;
    task.nextRun = skipsFirst ? when.schedule.NextRun(now) : now;
    return made;
}

/// "NAME({GUID})", for a component with "/COMPONENT" behind it.
bool IsWriterKey(const std::string& key) {
    constexpr size_t GuidLength = 38;
    const size_t open = key.find("({");
    if (open == std::string::npos || open == 0)
        return false;
    const size_t close = open + 1 + GuidLength;
    const bool whole = key.size() > close && key[close - 1] == '}' && key[close] == ')';
    return whole && (key.size() == close + 1 || (key[close + 1] == '/' && key.size() > close + 2));
}

bool LiesBelow(const std::string& key, const Fields& keys) {
    return std::any_of(keys.begin(), keys.end(),
                       [&](const std::string& each) { return StartsWith(key, each + '/'); });
}

void CheckApplications(const std::string& selected, const std::string& excluded) {
    const Fields keys = Lines(selected, "its keys");
    for (const std::string& key : keys)
        Demand(IsWriterKey(key), "\"" + key + "\" is no key of a writer or component");
    if (excluded != None)
        for (const std::string& key : Lines(excluded, "its exclusions"))
            Demand(IsWriterKey(key) && LiesBelow(key, keys),
                   "\"" + key + "\" is no component of what is selected");
}

} // namespace

NewBackup ReadBackupRecord(const std::string& record, SimTime now) {
    enum { NameAt, Sources, Target, Exclusions, Filter, When, FullEvery, Keep, Encryption, Type, Count };
    const Fields fields = FieldsOf(record, Count);
    const Fields sources = Lines(fields[Sources], "its sources");
    const bool byType = std::count(sources.begin(), sources.end(), AllTypes) > 0;
    Demand(!byType || sources.size() == 1, "it names folders beside all files of some types");
    Demand(!fields[Target].empty(), "it names no target");
    Lines(fields[Exclusions], "its exclusions");
    CheckFilter(fields[Filter], byType);
    const bool mirrored = fields[Type] == "Backup";
    Demand(mirrored || fields[Type] == "Snapshotbackup", "\"" + fields[Type] + "\" is no type of a backup");
    const RecordSchedule when = ReadSchedule(fields[When], mirrored);
    Number(fields[FullEvery], 0, Most, "its interval of full backups");
    Number(fields[Keep], 0, Most, "its number of snapshots to keep");
    const bool encrypted = Flag(fields[Encryption], "its encryption");
    NewBackup made = Make(Name(fields[NameAt], encrypted), mirrored ? "Backup" : "Snapshotbackup",
                          fields[Sources] + '\t' + fields[Target] + '\t' + fields[Exclusions], when, now);
    made.target = fields[Target];
    made.encrypted = encrypted;
    return made;
}

NewBackup ReadApplicationRecord(const std::string& record, SimTime now) {
    enum { NameAt, Keys, Target, Exclusions, FullEvery, Keep, When, Encryption, Nothing, Count };
    const Fields fields = FieldsOf(record, Count);
    CheckApplications(fields[Keys], fields[Exclusions]);
    Demand(!fields[Target].empty(), "it names no target");
    Demand(fields[Nothing].empty(), "something stands behind its last tab");
    const RecordSchedule when = ReadSchedule(fields[When], false);
    Number(fields[FullEvery], 0, Most, "its interval of full backups");
    Number(fields[Keep], 0, Most, "its number of snapshots to keep");
    const bool encrypted = Flag(fields[Encryption], "its encryption");
    NewBackup made = Make(Name(fields[NameAt], encrypted), "AdvBackup",
                          fields[Keys] + '\t' + fields[Target] + '\t' + fields[Exclusions], when, now);
    made.target = fields[Target];
    made.encrypted = encrypted;
    return made;
}

} // namespace devservice
