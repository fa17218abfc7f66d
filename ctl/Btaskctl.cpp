#include "ctl/Btaskctl.h"

#include "ctl/CommandLine.h"
#include "ctl/Help.h"

#include "zep/SysInfo.h"

using namespace Qt::Literals::StringLiterals;

namespace {

/// Takes the leading switches that say which service is meant; false when both are given, or one twice.
bool TakeMode(QStringList& words) {
    bool serverMode = false;
    int given = 0;
    for (; words.value(0) == "--server"_L1 || words.value(0) == "--desktop"_L1; ++given)
        serverMode = words.takeFirst() == "--server"_L1;
    ZEPSysInfoSetServerMode(serverMode);
    return given <= 1;
}

bool AsksForHelp(const QStringList& words) {
    return words.mid(0, words.indexOf("--"_L1)).contains("--help"_L1);
}

CtlExit ShowHelp(const QStringList& words, const Invocation& invocation) {
    const QString text = HelpText(words.mid(0, words.indexOf("--help"_L1)));
    return invocation.Write((text.isEmpty() ? HelpText() : text).toUtf8());
}

/// Whether anything was written shows in whether this device was asked to.
class WatchedOutput : public QIODevice {
public:
    explicit WatchedOutput(QIODevice& out) : m_out(out) { open(WriteOnly | Unbuffered); }
    bool WasUsed() const { return m_used; }

protected:
    qint64 readData(char*, qint64) override { return -1; }
    qint64 writeData(const char* octets, qint64 size) override {
        m_used = true;
        return m_out.write(octets, size);
    }

private:
    QIODevice& m_out;
    bool m_used = false;
};

CtlExit RunCommand(const Command& command, const QStringList& words, const Invocation& streams) {
    WatchedOutput out(streams.out);
    Invocation invocation{{}, {}, streams.in, out, streams.error, streams.stop, streams.sleep};
    const QString mistake = TakeWords(command, words, invocation);
    if (!mistake.isEmpty())
        return invocation.End(CtlExit::Usage, mistake);
    const CtlExit exit = command.run(invocation);
    // Whoever reads JSON gets an array, also of what ended before its first row.
    const bool isArray = invocation.Has(JsonOption.name) && !invocation.Has(FollowOption.name);
    if (isArray && !out.WasUsed() && exit != CtlExit::Usage)
        invocation.Write("[]\n");
    return exit;
}

} // namespace

CtlExit RunBtaskctl(const QStringList& arguments, QIODevice& in, QIODevice& out, QIODevice& error,
                    std::stop_token stop, CtlSleep sleep) {
    const Invocation invocation{{}, {}, in, out, error, std::move(stop), std::move(sleep)};
    QStringList words = arguments;
    if (!TakeMode(words))
        return invocation.End(CtlExit::Usage, u"One of --desktop and --server is given, once."_s);
    if (AsksForHelp(words))
        return ShowHelp(words, invocation);
    if (words == QStringList(u"--version"_s))
        return invocation.Write(VersionText().toUtf8());
    if (words.isEmpty())
        return invocation.End(CtlExit::Usage, u"No command is given. \"btaskctl --help\" lists them."_s);
    const Command* command = FindCommand(words);
    if (command == nullptr)
        return invocation.End(CtlExit::Usage, NoSuchCommand(words.join(u' ')));
    return RunCommand(*command, words.mid(QString(command->words).count(u' ') + 1), invocation);
}
