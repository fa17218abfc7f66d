// Labels: threads painting
#include "backup/FileIndexGuide.h"
#include "lanes/ProgressNote.h"
#include "lanes/ThreadReader.h"
#include "support/AgentService.h"
#include "support/ConsoleFixture.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "zep/Mui.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;
using Kind = devservice::FileMonitorSwitch::Kind;

namespace {

const QString ForceQuestion =
    u"Click 'Yes' to force refresh the file index that is used by file type backup, The initial indexing may "
    u"take a "
    "few minutes, during which the CPU usage may be high too. This is a one-time event. Do you want to continue?"_s;
const QString Busy = u"Indexing files..."_s;

/// A page with a guide, and a machine with two files whose monitor is registered and runs as told.
struct GuidedPage {
    explicit GuidedPage(const devservice::FileMonitorSwitch& how) {
        QDir files(QString::fromStdU16String((service->Home() / "files").u16string()));
        files.mkpath(u"."_s);
        for (const QString& name : {u"a.txt"_s, u"b.odt"_s})
            QVERIFY(QFile(files.filePath(name)).open(QIODevice::WriteOnly));
        if (how.kind != Kind::Absent)
            monitor.emplace("BrenFileMonSvc");
        service->SetFileMonitor(how);
    }
    void Ensure() {
        guide.Ensure([this] { ++went; });
    }

    ServiceFixture service{"empty"};
    std::optional<AgentService> monitor;
    ConsoleFixture<ThreadReader> parts;
    QWidget page;
    FileIndexGuide& guide = *new FileIndexGuide(parts.console, page);
    int went = 0;
};

} // namespace

class FileIndexGuideTest : public QObject {
    Q_OBJECT

private slots:
    void buildsTheIndexBeforeItIsNeeded() {
        GuidedPage page({Kind::Running});
        page.parts.prompts.ExpectQuestion(ZEPMuiGetStringW(Message::AskBuildFileIndex), false);
        page.Ensure();
        QTRY_VERIFY(page.parts.prompts.IsPlayed());
        QVERIFY(!page.parts.prompts.asked.destroys);

        page.parts.prompts.ExpectQuestion(ZEPMuiGetStringW(Message::AskBuildFileIndex), true);
        page.parts.prompts.ExpectOperation(Busy);
        page.Ensure();
        page.Ensure(); // a second click meanwhile
        QTRY_COMPARE(page.went, 1);
        QVERIFY(!page.parts.prompts.operation);

        page.Ensure(); // it is kept from now on: no question
        QTRY_COMPARE(page.went, 2);
    }

    void saysWhyThereIsNoIndex() {
        GuidedPage page({Kind::Absent});
        const AgentService agent; // a service manager that knows others
        const QString text = ZEPMuiGetStringW(Message::FileMonitorCannotBeOpened);
        page.parts.prompts.ExpectMessage(text);
        page.Ensure();
        QTRY_VERIFY(page.parts.prompts.IsPlayed());
        page.parts.prompts.ExpectMessage(text);
        page.guide.Force();
        QTRY_VERIFY(page.parts.prompts.IsPlayed());
        QCOMPARE(page.went, 0);
    }

    void buildingCanBeCalledOff() {
        GuidedPage page({Kind::Failing});
        page.parts.prompts.ExpectQuestion(ForceQuestion, true);
        page.parts.prompts.ExpectOperation(Busy);
        page.guide.Force();
        QTRY_VERIFY(page.parts.prompts.operation);
        QTRY_COMPARE(page.parts.prompts.operation->progress->Read().text, u"0 files found"_s);
        page.parts.prompts.operation->cancel();
        QTRY_VERIFY(!page.parts.prompts.operation);
    }

    void endsWithTheMonitor() {
        GuidedPage page({Kind::Failing});
        page.parts.prompts.ExpectQuestion(ZEPMuiGetStringW(Message::AskBuildFileIndex), true);
        page.parts.prompts.ExpectOperation(Busy);
        page.parts.prompts.ExpectMessage(u"The file monitor service stopped before the index was built."_s);
        page.Ensure();
        QTRY_VERIFY(page.parts.prompts.operation);
        page.service->SetFileMonitor({Kind::Absent});
        page.monitor.reset();
        QTRY_VERIFY(page.parts.prompts.IsPlayed());
        QVERIFY(!page.parts.prompts.operation);
        QCOMPARE(page.went, 0);
    }

    void waitsUntilTheIndexIsUpToDate() {
        GuidedPage page({Kind::Slow, 1ms});
        page.parts.prompts.ExpectQuestion(ForceQuestion, true);
        page.parts.prompts.ExpectOperation(Busy);
        page.guide.Force();
        QTRY_VERIFY(page.parts.prompts.IsPlayed());
        QTRY_VERIFY(!page.parts.prompts.operation);
        page.parts.prompts.ExpectOperation(Busy);
        page.guide.Refresh([&page] { ++page.went; });
        QTRY_COMPARE(page.went, 1);
    }
};

BTASK_TEST(FileIndexGuideTest);
#include "FileIndexGuideTest.moc"
