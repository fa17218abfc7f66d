#include "app/CommandLine.h"
#include "app/StartUp.h"
#include "app/SystemOperations.h"
#include "look/Look.h"

#include <QApplication>

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("BTaskMMC"));
    ApplyLook(application);
    const CommandLine commandLine(QApplication::arguments());
    SystemOperations operations(commandLine);
    CBTaskMMCApp(commandLine, operations).InitInstance();
    return 0;
}
