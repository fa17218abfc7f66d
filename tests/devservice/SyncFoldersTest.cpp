// Labels: threads
#include "RawHttp.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";
const QByteArray Store = "/43811DCD-8C5A-4EF9-B903-2EEA9CE88487/Team";

QByteArray ContentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("none");
}

} // namespace

/// How the service keeps folders in step.
class SyncFoldersTest : public QObject {
    Q_OBJECT

private slots:
    void otherComputersChangeFiles() {
        ServiceFixture service;
        service->SetVirtualDirectories({{"Team", "{C}", 3, Provider}});
        const QString local = service.Home() + "/local"_L1;
        QVERIFY(QDir().mkpath(local));
        QCOMPARE(Ask(service, "/schedule/getsynctask", "Team").Status(), 404);
        service->SetSetting("DropFolders", "Team\t" + local.toStdString());
        service->Advance(10min); // without a task nothing is kept in step
        QCOMPARE(Ask(service, "/DavCache/getfilever", Store + "/plan.odt").Status(), 404);
        const QByteArray id = Ask(service, "/schedule/getsynctask", "team").Body();
        QVERIFY(service->FindTask(id.toStdString()));
        QCOMPARE(Ask(service, "/schedule/dropfoldersync", "Team").Status(), 200);
        QCOMPARE(service->FindTask(id.toStdString())->state, TaskState::Running);
        service->Advance(60min);
        const QList<QByteArray> lines = Versions(service, "/plan.odt");
        QVERIFY(lines.size() > 3);
        QCOMPARE(lines.last().split('\t').first(), QByteArray("a"));
        QCOMPARE(ContentOf(local + "/plan.odt"_L1), ContentOf(service.Home() + "/drive/Team/plan.odt"_L1));
        service->SetTaskState(id.toStdString(), TaskState::Paused);
        service->Advance(60min);
        QCOMPARE(Versions(service, "/plan.odt"), lines);
    }

    void anOlderVersionComesBack() {
        ServiceFixture service("desktop");
        const QString present = service.Home() + "/drive/Team/plan.odt"_L1;
        const QList<QByteArray> lines = Versions(service, "/plan.odt");
        QList<QByteArray> chosen;
        for (const QByteArray& line : lines.mid(1))
            if (!line.startsWith('d') && chosen.isEmpty())
                chosen = line.split('\t');
        const QByteArray key = chosen[2] == "0" ? chosen[1] : chosen[1] + '#' + chosen[2];
        const QByteArray old =
            ContentOf(service.Home() + "/drive"_L1 + QString::fromLatin1(Store + "/.plan.odt/" + chosen[1]));
        QVERIFY(old != "none" && old != ContentOf(present));
        QCOMPARE(Ask(service, "/DavCache/droprevert", key).Status(), 200);
        QCOMPARE(ContentOf(present), old);
        QCOMPARE(Versions(service, "/plan.odt").size(), lines.size() + 1);
        const QByteArray now = Versions(service, "/plan.odt").first().split('\t')[1];
        for (const QByteArray& none : {now, QByteArray("1"), QByteArray(), chosen[1] + "#7"})
            QCOMPARE(Ask(service, "/DavCache/droprevert", none).Status(), 404);
        QCOMPARE(Ask(service, "/DavCache/getfilever", "/Team/plan.odt").Status(), 404);
    }

private:
    static Exchange Ask(ServiceFixture& service, const QByteArray& target, const QByteArray& body) {
        return Send(service->Port(), Request("GET", target, body));
    }
    static QList<QByteArray> Versions(ServiceFixture& service, const QByteArray& file) {
        QList<QByteArray> lines = Ask(service, "/DavCache/getfilever", Store + file).Body().split('\n');
        lines.removeLast();
        return lines;
    }
};

BTASK_TEST(SyncFoldersTest);
#include "SyncFoldersTest.moc"
