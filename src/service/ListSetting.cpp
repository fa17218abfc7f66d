#include "service/ListSetting.h"

#include "service/RequestText.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct Lists {
    Q_DECLARE_TR_FUNCTIONS(ListSetting)
};

/// Entries that stood in the list before have the fields they have.
QString RefusalOf(const ListSetting& list, const QStringList& before, const QString& entry) {
    return before.contains(entry) ? QueryRefusal(entry) : EntryRefusal(list, entry);
}

QString Refusal(const ListSetting& list, const QStringList& before, const QStringList& wanted) {
    for (const QString& entry : wanted) {
        const QString refusal = RefusalOf(list, before, entry);
        if (!refusal.isEmpty())
            return Lists::tr("The list was not changed. Its entry \"%1\": %2")
                .arg(QString(entry).replace(u'\t', u' '), refusal);
    }
    return LengthRefusal(QString::fromLatin1(list.name), wanted.join(u'\n'));
}

} // namespace

bool IsNamed(const QString& entry, const QString& name) {
    return entry.section(u'\t', 0, 0).compare(name, Qt::CaseInsensitive) == 0;
}

QString EntryRefusal(const ListSetting& list, const QString& entry) {
    const bool isLine = !entry.isEmpty() && !entry.contains(u'\n') && entry.count(u'\t') == list.fields - 1;
    return isLine ? QueryRefusal(entry) : Lists::tr("An entry can hold neither tabs nor line feeds.");
}

QStringList EntriesOf(const QString& value) {
    return value.split(u'\n', Qt::SkipEmptyParts);
}

SettingValue<QStringList> ReadList(const ServiceClient& service, const ListSetting& list,
                                   std::stop_token stop) {
    const SettingValue<QString> text = ReadSetting(service, list.AsSetting(), std::move(stop));
    return {text.state, EntriesOf(text.value), text.silent};
}

ListChange ChangeList(const ServiceClient& service, const ListSetting& list, const ListEdit& edit,
                      std::stop_token stop, const std::function<QString()>& prepare) {
    const SettingValue<QStringList> before = ReadList(service, list, stop);
    if (!before.WasRead())
        return {.failure = Lists::tr(
                    "The list was not changed, because the service did not tell what it holds now."),
                .silent = before.silent};
    QStringList wanted = before.value;
    const QString givenUp = edit(wanted);
    if (!givenUp.isEmpty() || wanted == before.value)
        return {.stored = givenUp.isEmpty(), .failure = givenUp, .entries = before.value};
    if (const QString refusal = Refusal(list, before.value, wanted); !refusal.isEmpty())
        return {.failure = refusal, .entries = before.value};
    if (const QString unprepared = prepare ? prepare() : QString(); !unprepared.isEmpty())
        return {.failure = unprepared, .entries = before.value};

    const bool written(WriteSetting(service, list.AsSetting(), wanted.join(u'\n'), stop));
    const SettingValue<QStringList> after = ReadList(service, list, stop);
    if (after.WasRead() && after.value == wanted)
        return {.stored = true, .failure = {}, .entries = wanted};
    const QString failure =
        !written          ? Lists::tr("The service did not take the list.")
        : after.WasRead() ? Lists::tr("The service keeps another list than was written.")
                          : Lists::tr("The list was written, but the service did not tell what it keeps.");
    return {.failure = failure, .entries = after.WasRead() ? std::optional(after.value) : std::nullopt};
}
