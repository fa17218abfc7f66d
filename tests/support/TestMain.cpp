#include "TestMain.h"

#include <QApplication>

#include <map>
#include <string>

using namespace Qt::Literals::StringLiterals;

namespace {

using TestMaker = std::function<std::unique_ptr<QObject>()>;

std::map<std::string, TestMaker>& Registry() {
    static std::map<std::string, TestMaker> registry;
    return registry;
}

/// Takes "-class NAME" out of the arguments, which are Qt Test's otherwise, and returns NAME.
std::string TakeClassArgument(QStringList& arguments) {
    const qsizetype at = arguments.indexOf("-class"_L1);
    if (at < 0 || at + 1 >= arguments.size())
        return {};
    std::string name = arguments.at(at + 1).toStdString();
    arguments.remove(at, 2);
    return name;
}

} // namespace

TestRegistration::TestRegistration(const char* name, std::function<std::unique_ptr<QObject>()> make) {
    Registry().emplace(name, std::move(make));
}

int main(int argc, char** argv) {
    QApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments();
    const std::string only = TakeClassArgument(arguments);
    int failed = 0;
    int run = 0;
    for (const auto& [name, make] : Registry()) {
        if (!only.empty() && only != name)
            continue;
        const std::unique_ptr<QObject> test = make();
        failed += QTest::qExec(test.get(), arguments);
        ++run;
    }
    return run == 0 ? 2 : failed == 0 ? 0 : 1;
}
