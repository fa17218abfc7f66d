// Labels: threads
#include "RawHttp.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QDir>
#include <QFile>

#include <filesystem>

using namespace Qt::Literals::StringLiterals;
using namespace devservice;

constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";
constexpr char Card[] = "<SafeCard><Name>Login Info - V</Name><Id>{C}</Id><Fields><Field><FieldName>Password"
                        "</FieldName><FieldData>c2VjcmV0</FieldData><FieldId>{F}</FieldId><Encrypted>True"
                        "</Encrypted></Field></Fields>";

/// The service's stand-ins for storage: a tree of folders, accounts, logins.
class CloudTest : public QObject {
    Q_OBJECT

private slots:
    void listsAsReadersLookForIt_data() {
        const Columns<QByteArray, QByteArray> row("prefix", "tag");
        row("one letter", "D", "D:");
        row("none", "", "");
        row("long", "lp1", "lp1:");
    }

    void listsAsReadersLookForIt() {
        const auto [prefix, tag] = Fetched<QByteArray, QByteArray>();
        Options options;
        options.davPrefix = prefix.toStdString();
        ServiceFixture service(options);
        service->SetVirtualDirectories({{"V", "{C}"}});
        QDir drive(service.Home() + "/drive/V"_L1);
        QVERIFY(drive.removeRecursively() && drive.mkpath(u"Q&A 50%"_s) && drive.mkpath(u".hidden"_s));
        QFile file(drive.filePath(u"r\u00e4um.txt"_s));
        QVERIFY(file.open(QIODevice::WriteOnly) && file.write("1234") == 4);
        file.close();
        const Exchange exchange = Send(service->Port(), Request("PROPFIND", "/resources/v"));
        QCOMPARE(exchange.Status(), 207);
        // Of each element what a reader picks out, in the order in which it looks.
        const QByteArray dates = exchange.Body().contains(" GMT</" + tag + "getlastmodified>") ? "dated" : "";
        QByteArray picked = dates;
        QList<QByteArray> elements =
            exchange.Body().split('\n').first().replace('<' + tag + "response>", "\n").split('\n');
        elements.removeFirst();
        for (const QByteArray& element : elements) {
            qsizetype at = 0;
            for (const QByteArrayView pattern :
                 {"href>", "displayname>", "iscollection>", "getlastmodified>"}) {
                at = element.indexOf(pattern, at) + pattern.size();
                if (pattern != "getlastmodified>")
                    picked += ' ' + element.mid(at, element.indexOf('<', at) - at);
            }
            at = element.indexOf("</a:mesffolder>");
            picked += ' ' + element.mid(at - 1, 1) + ';';
        }
        QCOMPARE(picked, QByteArray("dated /resources/v/ v 1 0; /resources/v/.hidden/ .hidden 1 1; "
                                    "/resources/v/Q%26A%2050%25/ Q&A 50% 1 0; "
                                    "/resources/v/r%C3%A4um.txt r\xC3\xA4um.txt 0 0;"));
    }

    void changesTheFolderAndNothingAbove_data() {
        const Columns<QByteArray, int, QString, QString> row("request", "status", "there", "gone");
        const QString inside = u"drive/V/Documents"_s;
        const auto mkcol = [](const QByteArray& path) { return Request("MKCOL", "/resources" + path); };
        row("make", mkcol("/V/New%20one"), 200, u"drive/V/New one"_s, {});
        row("make again", mkcol("/V/Documents"), 405, inside, {});
        row("make nowhere", mkcol("/V/None/New"), 409, {}, u"drive/V/None"_s);
        row("make an account", mkcol("/W"), 403, {}, u"drive/W"_s);
        row("make above", mkcol("/V/../../New"), 404, {}, u"New"_s);
        row("make above, escaped", mkcol("/V/..%2F..%2FNew"), 404, {}, u"New"_s);
        row("make behind a link", mkcol("/V/link/New"), 404, {}, u"outside/New"_s);
        row("delete", Request("DELETE", "/resources/V/Pictures"), 200, inside, u"drive/V/Pictures"_s);
        row("delete an account", Request("DELETE", "/resources/V"), 403, inside, {});
        row("delete all", Request("DELETE", "/resources/"), 403, inside, {});
        row("delete above", Request("DELETE", "/resources/V/../../settings"), 404, u"settings"_s, {});
        row("delete behind a link", Request("DELETE", "/resources/V/link/kept"), 404, u"outside/kept"_s, {});
        const auto move = [](const QByteArray& path, const QByteArray& to) {
            return Request("MOVE", "/resources" + path + "?Destination=" + to);
        };
        row("move", move("/V/Documents", "/resources/V/Texts"), 200, u"drive/V/Texts"_s, inside);
        row("move onto another", move("/V/Documents", "/resources/V/Pictures"), 405, inside, {});
        row("move above", move("/V/Documents", "/resources/V/../../Texts"), 403, inside, u"Texts"_s);
        row("move elsewhere", move("/V/Documents", "/Texts"), 400, inside, {});
        row("rename an account", move("/v", "/resources/W%201"), 200, u"drive/W 1/Documents"_s, u"drive/V"_s);
        row("rename to one that is", move("/V", "/resources/other"), 409, inside, {});
        row("read", Request("GET", "/resources/V/Read%20me.txt"), 200, inside, {});
        row("read above", Request("GET", "/resources/V/../../settings/settings.txt"), 404, inside, {});
    }

    void changesTheFolderAndNothingAbove() {
        const auto [request, status, there, gone] = Fetched<QByteArray, int, QString, QString>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"V", "{C}", 3, Provider}, {"Other", "{C}", 3, Provider}});
        const QDir home(service.Home());
        QVERIFY(home.mkpath(u"outside/kept"_s));
        std::error_code error;
        std::filesystem::create_directory_symlink(home.filePath(u"outside"_s).toStdU16String(),
                                                  home.filePath(u"drive/V/link"_s).toStdU16String(), error);
        if (error && request.contains("/link/"))
            QSKIP("This system lets us make no links, so that there is none to follow.");
        QCOMPARE(Send(service->Port(), request).Status(), status);
        QVERIFY2(there.isEmpty() || home.exists(there), qPrintable(there));
        QVERIFY2(gone.isEmpty() || !home.exists(gone), qPrintable(gone));
        const Exchange root = Send(service->Port(), Request("PROPFIND", "/resources"));
        QCOMPARE(root.Body().count("<D:response>"), home.exists(u"drive/Other"_s) ? 3 : 2);
    }

    void mountsLogsInAndDismounts() {
        ServiceFixture service;
        const auto ask = [&service](const QByteArray& target, const QByteArray& body = {}) {
            return Send(service->Port(), Request("GET", target, body + '\0'));
        };
        const QByteArray providers = ask("/profile/?pmcmethod=GetPopularStorageList").Body();
        QCOMPARE(providers.count("<VirtualStorage "), 5);
        for (const char* part : {" EmailFormat=\"TRUE\"", " BeginWith=\"HL-\"", " Hidden=\"TRUE\"",
                                 " Value=\"north-2\"", "</SafeCardTemplate><ServerAddress>"})
            QVERIFY2(providers.contains(part), part);

        QCOMPARE(ask("/mysafe/?PMCMethod=addnewcard", QByteArray(Card) + "</SafeCard>").Status(), 400);
        QCOMPARE(ask("/profile/?PMCMethod=AddNewNode", Node("V", "{C}")).Status(), 400); // no such card
        QCOMPARE(ask("/mysafe/?PMCMethod=addnewcard", Card).Status(), 200);
        service->SetLogin("after:10@v");
        QCOMPARE(ask("/profile/?PMCMethod=AddNewNode", Node("V", "{C}")).Status(), 200);
        QCOMPARE(ask("/profile/?PMCMethod=AddNewNode", Node("v", "{C}")).Status(), 409);
        QCOMPARE(ask("/profile/?PMCMethod=GetVDirStatus", "V").Body(), QByteArray("1"));
        QCOMPARE(Send(service->Port(), Request("PROPFIND", "/resources/V")).Status(), 503);
        service->Advance(std::chrono::seconds(9));
        QCOMPARE(ask("/profile/?PMCMethod=GetVDirStatus", "V").Body(), QByteArray("1"));
        service->Advance(std::chrono::seconds(1));
        QCOMPARE(ask("/profile/?PMCMethod=GetVDirStatus", "V").Body(), QByteArray("3"));
        QCOMPARE(ask("/DavCache/prefetchfolder", "/V").Status(), 200);
        QCOMPARE(Send(service->Port(), Request("MKCOL", "/resources/V/Mine")).Status(), 200);

        service->Stop();
        service->Start();
        QVERIFY(ask("/profile/7?PMCMethod=GetVdirList")
                    .Body()
                    .contains("<VDir Name=\"V\" SafeCardId=\"{C}\" Status=\"3\""));
        const QByteArray card =
            ask("/mysafe/?PMCMethod=getcard&CardNameOnly=Resources&XMLHttpRequest=1&CardId={C}").Body();
        QVERIFY2(card.endsWith("><Field FieldName=\"Password\" Encrypted=\"TRUE\" FieldData=\"c2VjcmV0\" "
                               "FieldId=\"{F}\"/></SafeCard>"),
                 card);

        const QByteArray undo =
            "<ZEPProfileReq><NodeContainer>Resources/VDirs</NodeContainer><NodeIDFieldName>Display.Name"
            "</NodeIDFieldName><NodeIDFieldValue>V</NodeIDFieldValue></ZEPProfileReq>";
        QCOMPARE(ask("/profile/?PMCMethod=RemoveNode", undo).Status(), 200);
        QCOMPARE(ask("/profile/?PMCMethod=RemoveNode", undo).Status(), 404);
        QCOMPARE(Send(service->Port(), Request("PROPFIND", "/resources/V")).Status(), 404);
        // The account keeps its files until it is mounted again.
        QCOMPARE(ask("/profile/?PMCMethod=AddNewNode", Node("V", "{C}")).Status(), 200);
        QVERIFY(QDir(service.Home()).exists(u"drive/V/Mine"_s));
    }

    void loginsEndAsTold_data() {
        const Columns<QByteArray, QByteArray, QByteArray, QByteArray> row("how", "status", "listed",
                                                                          "setting");
        row("in", "3", "3", {});
        row("never", "1", "1", {});
        row("no-plugin", "5", "2", {});
        row("refused:a@b.example is unknown@", "2", "2", "a@b.example is unknown");
        row("never@other", "3", "3", {});
        row("in@V", "3", "3", {});
    }

    void loginsEndAsTold() {
        const auto [how, status, listed, setting] = Fetched<QByteArray, QByteArray, QByteArray, QByteArray>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"V", "{C}", 3, Provider}});
        const auto ask = [&service](const QByteArray& target, const QByteArray& body = {}) {
            return Send(service->Port(), Request("GET", target, body));
        };
        service->SetLogin("refused:before");
        QCOMPARE(ask("/profile/?PMCMethod=ForceRelogin&VDirName=v").Status(), 200);
        QCOMPARE(ask("/settings/" + QByteArray(Provider) + "/V").Body(), QByteArray("before"));
        service->SetLogin("in");
        QCOMPARE(Send(service->Port(), Request("PUT", "/dev/login?" + how.toPercentEncoding())).Status(),
                 200);
        QCOMPARE(ask("/profile/?PMCMethod=ForceRelogin&VDirName=V").Status(), 200);
        QCOMPARE(ask("/profile/?PMCMethod=GetVDirStatus", "V").Body(), status);
        QVERIFY(ask("/profile/1?PMCMethod=GetVdirList").Body().contains("Status=\"" + listed + '"'));
        const Exchange trouble = ask("/settings/" + QByteArray(Provider) + "/V");
        QCOMPARE(trouble.Status() == 200 ? trouble.Body() : QByteArray(), setting);
    }

    void desktopHasSomethingToShow() {
        ServiceFixture service("desktop");
        QCOMPARE(Send(service->Port(), Request("GET", "/settings/ConsoleRecords")).Body(), QByteArray("1"));
        const Exchange quota = Send(service->Port(), Request("PROPFIND", "/resources/home/quota"));
        QCOMPARE(quota.Status(), 207);
        QVERIFY(quota.Body().contains("allocated-bytes>26843545600<"));
        for (const VirtualDirectory& each : service->VirtualDirectories()) {
            const QByteArray card(each.safeCardId.data());
            const QByteArray target = "/mysafe/?PMCMethod=getcard&CardNameOnly=Resources&CardId=" + card;
            QCOMPARE(Send(service->Port(), Request("GET", target)).Status(), 200);
            QVERIFY(!QDir(service.Home() + "/drive/"_L1 + QString::fromStdString(each.name)).isEmpty());
        }
    }

private:
    static QByteArray Node(const QByteArray& name, const QByteArray& card) {
        const QByteArray node = "<VDir><SafeCardId>" + card + "</SafeCardId><Display.Name>" + name +
                                "</Display.Name><SPID>" + Provider + "</SPID><HostId></HostId></VDir>";
        return "<ZEPProfileReq><NodeContainer>Resources/VDirs</NodeContainer><NodeXML>" +
               node.toPercentEncoding() + "</NodeXML></ZEPProfileReq>";
    }
};

BTASK_TEST(CloudTest);
#include "CloudTest.moc"
