#include "zep/TracePrintf.h"

#include "platform/SharedFile.h"
#include "zep/SysInfo.h"
#include "zep/Text.h"

#include <QCoreApplication>
#include <QDateTime>

#include <array>
#include <string>
#include <string_view>
#include <system_error>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr std::uint64_t rotationSize = 4 * 1024 * 1024;
constexpr int oldFiles = 3;

QLatin1String LevelName(TraceLevel level) {
    switch (level) {
    case TraceLevel::Error:
        return "ERROR"_L1;
    case TraceLevel::Warning:
        return "WARNING"_L1;
    case TraceLevel::Info:
        return "INFO"_L1;
    case TraceLevel::Verbose:
        break;
    }
    return "VERBOSE"_L1;
}

/// One line of the log: whatever the text holds, it neither ends the line early nor forges another.
QByteArray Line(TraceLevel level, QStringView text) {
    while (text.endsWith(u'\n') || text.endsWith(u'\r'))
        text.chop(1);
    QString line = QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs);
    line += u" [%1] "_s.arg(QCoreApplication::applicationPid());
    line += LevelName(level).toString().leftJustified(8);
    for (const QChar c : text) {
        if (c == u'\n')
            line += "\\n"_L1;
        else
            line +=
                c.category() == QChar::Other_Control && c != u'\t' ? QChar(QChar::ReplacementCharacter) : c;
    }
    line += u'\n';
    return ZEPUnicodeToUTF8(line);
}

std::filesystem::path Aged(std::filesystem::path log, int age) {
    if (age > 0) {
        log += ".";
        log += std::to_string(age);
    }
    return log;
}

/// Moves the full log aside and drops the oldest. A console that meets another at it leaves it to that one.
void Rotate(const std::filesystem::path& log) {
    std::filesystem::path lockFile = log;
    lockFile += ".lock";
    const auto lock = platform::FileLock::TryAcquire(lockFile);
    std::error_code error;
    if (!lock || std::filesystem::file_size(log, error) < rotationSize || error)
        return;
    for (int age = oldFiles; age > 0; --age)
        std::filesystem::rename(Aged(log, age - 1), Aged(log, age), error);
}

} // namespace

void TracePrintf(TraceLevel level, const QString& text) noexcept {
    try {
        const auto log = ZEPGetHomePath(u"logging"_s, HomePath::Created) / "BTaskMMC.log";
        const QByteArray line = Line(level, text);
        const auto size = platform::AppendToFile(log, std::string_view(line.data(), size_t(line.size())));
        if (size && *size >= rotationSize)
            Rotate(log);
    } catch (...) {
        // A trace is never worth the program that it traces.
        return;
    }
}
