#include "devservice/BackupChange.h"

#include "devservice/BackupRecords.h"
#include "devservice/WireText.h"

namespace devservice {

namespace {

using Fields = std::vector<std::string>;

// Of both records; those of applications have no filter and no type, and their schedule stands further
// behind.
enum { NameAt, SourcesAt, TargetAt, ExclusionsAt };
enum { FilterAt = 4, WhenAt, FullEveryAt, KeepAt, EncryptionAt, TypeAt };
enum { ApplicationFullEveryAt = 4, ApplicationKeepAt, ApplicationWhenAt, ApplicationEncryptionAt };

Fields Split(const std::string& text, char separator) {
    Fields fields(1);
    for (const char c : text) {
        if (c == separator)
            fields.emplace_back();
        else
            fields.back() += c;
    }
    return fields;
}

std::string Join(const Fields& fields, char separator) {
    std::string all = fields.front();
    for (size_t field = 1; field < fields.size(); ++field)
        all.append(1, separator).append(fields[field]);
    return all;
}

void FillIn(std::string& field, const std::string& text) {
    if (field.empty())
        field = text;
}

/// A line that is there already stays in place of an empty one.
void FillInFilter(std::string& field) {
    const Fields usual{"*", "*", "*", "NoSys", "NoHidden"};
    Fields lines = Split(field, '\n');
    if (field.empty())
        lines.resize(usual.size());
    for (size_t line = 0; line < std::min(lines.size(), usual.size()); ++line)
        FillIn(lines[line], usual[line]);
    field = Join(lines, '\n');
}

bool IsMarked(const std::string& name) {
    const std::string mark = "[Encrypted]";
    return name.size() > mark.size() && name.compare(name.size() - mark.size(), mark.size(), mark) == 0;
}

/// What the record's own reader wants of fields that were left empty, and nobody keeps.
constexpr char AnySchedule[] = "1 2025 1 1 0 0 0 1 1 1 1 1 1 1 0\n";

} // namespace

Task ChangedBackup(const Task& before, const std::string& record, SimTime now) {
    const bool ofApplications = SameName(before.type, "advbackup");
    if (SameName(before.type, "ccbackup"))
        throw RecordError("a cross cloud backup has no record");
    Fields fields = Split(record, '\t');
    if (fields.size() != (ofApplications ? 9U : 10U))
        throw RecordError("it has " + std::to_string(fields.size()) + " fields");
    const size_t when = ofApplications ? size_t{ApplicationWhenAt} : size_t{WhenAt};
    const bool newSchedule = !fields[when].empty();
    Fields known = Split(before.description, '\t');
    known.resize(std::max<size_t>(known.size(), 3));
    FillIn(fields[NameAt], before.name);
    for (size_t piece = 0; piece < 3; ++piece)
        FillIn(fields[SourcesAt + piece], known[piece]);
    FillIn(fields[when], AnySchedule);
    FillIn(fields[ofApplications ? size_t{ApplicationFullEveryAt} : size_t{FullEveryAt}], "10");
    FillIn(fields[ofApplications ? size_t{ApplicationKeepAt} : size_t{KeepAt}], "0");
    FillIn(fields[ofApplications ? size_t{ApplicationEncryptionAt} : size_t{EncryptionAt}],
           IsMarked(fields[NameAt]) ? "1" : "0");
    if (!ofApplications) {
        FillInFilter(fields[FilterAt]);
        FillIn(fields[TypeAt], SameName(before.type, "backup") ? "Backup" : "Snapshotbackup");
        if (!SameName(fields[TypeAt], before.type))
            throw RecordError("a backup of another type cannot be made of it");
    }
    const std::string whole = Join(fields, '\t');
    const Task made =
        (ofApplications ? ReadApplicationRecord(whole, now) : ReadBackupRecord(whole, now)).task;
    Task after = before;
    after.name = made.name;
    after.description = made.description;
    if (newSchedule) {
        after.schedule = made.schedule;
        after.nextRun = made.schedule.NextRun(now);
    }
    return after;
}

} // namespace devservice
