#include "app/CommandLine.h"
#include "app/StartUp.h"
#include "app/SystemOperations.h"
#include "look/Look.h"
#include "platform/Console.h"
#include "platform/Memory.h"

#include <QApplication>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The words as they are known before there is an application, which needs a display.
QStringList Words(int argc, char** argv) {
    QStringList words;
    for (int index = 0; index < argc; ++index)
        words.append(QString::fromLocal8Bit(argv[index]));
    return words;
}

} // namespace

int main(int argc, char** argv) {
    platform::ShareHeaps();
    const QString text = CommandLine(Words(argc, argv)).TextToPrint();
    if (!text.isEmpty() && platform::PrintText(text.toStdString()))
        return 0;
    QApplication application(argc, argv);
    QApplication::setApplicationName(u"BTaskMMC"_s);
    ApplyLook(application);
    const CommandLine commandLine(QApplication::arguments());
    commandLine.ApplySurroundings();
    SystemOperations operations(commandLine);
    if (!text.isEmpty()) { // started where nothing is printed
        operations.SetTitle(QApplication::applicationName());
        operations.ShowMessage(MessageKind::Information, text);
        return 0;
    }
    CBTaskMMCApp app(commandLine, operations);
    app.InitInstance();
    return app.ExitCode();
}
