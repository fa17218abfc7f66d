#include "ctl/Btaskctl.h"
#include "platform/Console.h"
#include "platform/Folders.h"
#include "service/ServiceClient.h"
#include "zep/Mui.h"

#include <QCoreApplication>
#include <QFile>

namespace {
constexpr int StandardInput = 0;
constexpr int StandardOutput = 1;
constexpr int StandardError = 2;
} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    platform::PrepareConsole();
    QFile in;
    QFile out;
    QFile error;
    // Whoever has no standard input reads nothing from it.
    static_cast<void>(in.open(StandardInput, QIODevice::ReadOnly));
    if (!out.open(StandardOutput, QIODevice::WriteOnly | QIODevice::Unbuffered) ||
        !error.open(StandardError, QIODevice::WriteOnly | QIODevice::Unbuffered))
        return static_cast<int>(CtlExit::Refused);
    const auto end = [&error](CtlExit exit, const QString& sentence) {
        error.write(sentence.toUtf8() + '\n');
        return static_cast<int>(exit);
    };
    if (const QString mistake = ServicePortMistake(); !mistake.isEmpty())
        return end(CtlExit::Usage, mistake);
    ZEPMuiInitialize();
    try {
        return static_cast<int>(RunBtaskctl(QCoreApplication::arguments().mid(1), in, out, error));
    } catch (const platform::FolderUnknown& unknown) {
        return end(CtlExit::NoDatabase, QString::fromUtf8(unknown.what()));
    }
}
