#include "ctl/Btaskctl.h"

#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QBuffer>
#include <QDir>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::Literals::StringLiterals;

class DavCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void endsWithItsCode_data() {
        // The line's words stand between bars.
        const Columns<QString, CtlExit, QString> row("line", "exit", "sent");
        using enum CtlExit;
        row("dav|ls|/V", Done, "PROPFIND /resources/V");
        row("dav|ls|", Done, "PROPFIND /resources");
        row("dav|ls|/V/None", Refused, "PROPFIND /resources/V/None");
        row("dav|ls|V", Usage, {});
        row("dav|ls|/V/a?b", Usage, {});
        row("dav|mkdir|/V|New one", Done, "MKCOL /resources/V/New%20one");
        row("dav|mkdir|/V/None|New", Refused, "MKCOL /resources/V/None/New");
        row("dav|mkdir|/V|..", Usage, {});
        row("dav|mkdir|/V|", Usage, {});
        row("dav|mkdir|/V", Usage, {});
        row("dav|rm|/V/Pictures", Done, "DELETE /resources/V/Pictures");
        row("dav|rm|/V/None", Refused, "DELETE /resources/V/None");
        row("dav|rm|/V", Usage, {});
        row("dav|rm|/V/Pictures/", Usage, {});
        row("dav|rm|V/Pictures", Usage, {});
        row("dav|rm|/V/%41", Usage, {});
    }
    void endsWithItsCode() {
        const auto [line, exit, sent] = Fetched<QString, CtlExit, QString>();
        ServiceFixture service;
        Mount(service);
        QByteArray error;
        QCOMPARE(Btaskctl(line.split(u'|'), nullptr, &error), exit);
        QCOMPARE(service.RequestLines(), sent.isEmpty() ? QStringList() : QStringList(sent));
        QCOMPARE(error.isEmpty(), exit == CtlExit::Done);
        QVERIFY(QDir(service.Home()).exists(u"drive/V/Documents"_s));
    }

    void listsAsObjects() {
        ServiceFixture service;
        Mount(service);
        QDir drive(service.Home() + "/drive/V"_L1);
        QVERIFY(drive.removeRecursively() && drive.mkpath(u"r\u00e4um & 50%"_s));
        QByteArray out;
        QCOMPARE(Btaskctl({u"dav"_s, u"ls"_s, u"/V"_s, u"--json"_s}, &out), CtlExit::Done);
        const QJsonArray rows = QJsonDocument::fromJson(out).array();
        QCOMPARE(rows.size(), 1);
        const QJsonObject entry = rows[0].toObject();
        QCOMPARE(entry.keys(), (QStringList{u"href"_s, u"isFolder"_s, u"lastModified"_s, u"name"_s}));
        QVERIFY(entry[u"name"_s].toString().startsWith(u"r\u00e4um "_s));
        QCOMPARE(entry[u"isFolder"_s], QJsonValue(true));

        QVERIFY(service->SetFault("fin"));
        QCOMPARE(Btaskctl({u"dav"_s, u"ls"_s, u"/V"_s, u"--json"_s}, &out), CtlExit::Refused);
        QVERIFY(QJsonDocument::fromJson(out).isArray());
    }

private:
    static void Mount(ServiceFixture& service) {
        service->SetVirtualDirectories({{"V", "{C}", 3, "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}"}});
    }

    static CtlExit Btaskctl(const QStringList& arguments, QByteArray* out = nullptr,
                            QByteArray* error = nullptr) {
        QBuffer in;
        QBuffer written;
        QBuffer said;
        for (QBuffer* buffer : {&in, &written, &said})
            buffer->open(QIODevice::ReadWrite);
        const CtlExit exit = RunBtaskctl(arguments, in, written, said, {});
        if (out)
            *out = written.data();
        if (error)
            *error = said.data();
        return exit;
    }
};

BTASK_TEST(DavCommandsTest);
#include "DavCommandsTest.moc"
