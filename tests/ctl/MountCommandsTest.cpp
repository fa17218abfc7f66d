// Labels: threads
#include "Shell.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QTemporaryFile>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Its waits end at once.
Run Mount(const QStringList& arguments, const QByteArray& input = {}, const CtlSleep& sleep = {}) {
    const CtlSleep atOnce = [](const std::stop_token& stop, std::chrono::milliseconds) {
        return !stop.stop_requested();
    };
    const std::stop_source stop;
    return Btaskctl(arguments, stop.get_token(), input, sleep ? sleep : atOnce);
}

QString Methods(const ServiceFixture& service) {
    QStringList methods;
    for (const QString& line : service.RequestLines())
        methods.append(line.section(u'=', -1).section(u'/', -1));
    return methods.join(u' ');
}

QString CardOf(ServiceFixture& service) {
    for (const devservice::ReceivedRequest& request : service->Requests())
        if (QString::fromStdString(request.target).endsWith("addnewcard"_L1))
            return QString::fromStdString(request.body);
    return {};
}

} // namespace

/// Providers and mounts from the command line.
class MountCommandsTest : public QObject {
    Q_OBJECT

private slots:
    void listsProviders() {
        const ServiceFixture service;
        const QByteArray out = Mount({u"providers"_s, u"--json"_s}).out;
        QVERIFY2(out.startsWith("[\n") || out.startsWith("[{"), out.constData());
        QVERIFY(out.contains("\"displayName\":\"Fennmoor Storage\","
                             "\"spId\":\"{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}\""));
    }

    void mounts_data() {
        // The line's words stand between bars, standard input holds "hunter2"; F is the first provider.
        const Columns<QString, QString, CtlExit, QByteArray, QString> row("line", "login", "exit", "error",
                                                                          "methods");
        using enum CtlExit;
        const QString reads = u"GetPopularStorageList"_s;
        const QString mounted = reads + u" GetVdirList addnewcard AddNewNode GetVDirStatus"_s;
        const QString login = u"|--field|User Name=mara|--secret|Password=-"_s;
        row(u"F|My (1)"_s + login, "in", Done, "", mounted + u" prefetchfolder"_s);
        row(u"f|My (1)"_s + login, "in", Done, "", mounted + u" prefetchfolder"_s);
        row(u"F|V|--publish"_s + login, "in", Done, "",
            u"GetPopularStorageList GetVdirList ConsoleRecords addnewcard AddNewNode GetVDirStatus "
            "prefetchfolder ConsolePublish"_s);
        row(u"F|V"_s + login, "refused:Quota", Refused,
            "Quota. It stopped when the virtual directory was being validated. The half-made virtual "
            "directory "
            "was removed.\n",
            mounted + u" V GetVdirList RemoveNode"_s);
        row(u"F|a/b"_s + login, "in", Usage,
            "Virtual Directory name can only contain alphanumeric characters or '.', '-', '_','(',')' and "
            "'#'!\n",
            "");
        row(u"F|hOME"_s + login, "in", Refused, "There is a Virtual Directory with the same name!\n",
            reads + u" GetVdirList"_s);
        row(u"none|V"_s + login, "in", Refused, "There is no storage provider \"none\".\n", reads);
        row("F|V|--field|User Name=m", "in", Usage, "One or More Fields Is Empty. (Password)\n", reads);
        row("F|V|--field|Password=p", "in", Usage,
            "\"Password\" is a secret: it is given by --secret, not as an argument.\n", reads);
        row("F|V|--field|Pass=p", "in", Refused, "\"Fennmoor Storage\" has no field \"Pass\".\n", reads);
        row(u"F|V|--field|User Name=m"_s + login, "in", Usage,
            "The field \"User Name\" is given too often.\n", reads);
    }

    void mounts() {
        const auto [line, login] = Fetched<QString, QString>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"Home", "{card}", 3, "{sp}"}});
        QVERIFY(service->SetLogin(login.toStdString()));
        const QString id = u"{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}"_s;
        QStringList words = line.split(u'|');
        if (words[0].size() == 1)
            words[0] = words[0] == "F"_L1 ? id : id.toLower();
        const Run run = Mount(QStringList(u"mount"_s) + words, "hunter2\n");
        QTEST(run.error, "error");
        QTEST(run.exit, "exit");
        QTEST(Methods(service), "methods");
        QVERIFY(!run.out.contains("hunter2") && !run.error.contains("hunter2"));
    }

    void fieldsAreCutAtTheFirstEqualsSign() {
        ServiceFixture service;
        QTemporaryFile file;
        QVERIFY(file.open());
        file.write("s=1\r\n");
        file.close();
        // Of three fields one is not given, and sends what the provider proposes.
        Mount({u"mount"_s, u"{2B6E8D74-9C63-401D-BE77-43FA05C9DB03}"_s, u"V"_s, u"--field"_s,
               u"Access Key=HL-a=b"_s, u"--secret"_s, u"Secret Key="_s + file.fileName()});
        const QString card = CardOf(service);
        for (const char* value : {"HL-a=b", "s=1", "backups"})
            QVERIFY2(card.contains(u"<FieldData>"_s + QString::fromLatin1(QByteArray(value).toBase64()) +
                                   u"</FieldData>"_s),
                     value);
    }

    void fieldsOfOneNameAreGivenInTurn() {
        ServiceFixture service;
        service->SetAnswer("/profile/?pmcmethod=GetPopularStorageList",
                           devservice::Answer{200, "<VirtualStorageProviders><P DisplayName='P' SPID='p'>"
                                                   "<SafeCardTemplate><F Name='A'/><F Name='A'/><F Name='B' "
                                                   "Hidden='TRUE'/></SafeCardTemplate></P>"
                                                   "</VirtualStorageProviders>"});
        QCOMPARE(Mount({u"mount"_s, u"p"_s, u"V"_s, u"--field"_s, u"A=1"_s, u"--field"_s, u"A=2"_s}).exit,
                 CtlExit::Refused); // no plug-in
        const QString card = CardOf(service);
        QVERIFY(card.indexOf("<FieldData>MQ=="_L1) < card.indexOf("<FieldData>Mg=="_L1));
        QVERIFY(card.contains("<FieldData></FieldData>"_L1));
    }

    void publishingThatIsNotOfferedSendsNothing() {
        ServiceFixture service;
        service->SetSetting("ConsoleRecords", "0");
        const Run run = Mount({u"mount"_s, u"{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}"_s, u"V"_s, u"--field"_s,
                               u"User Name=m"_s, u"--secret"_s, u"Password=-"_s, u"--publish"_s},
                              "p");
        QCOMPARE(run.exit, CtlExit::Refused);
        QVERIFY(CardOf(service).isEmpty());
    }

    void interruptedItTakesTheNodeBack() {
        ServiceFixture service;
        service->SetLogin("never");
        int waits = 0;
        const Run run =
            Mount({u"mount"_s, u"{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}"_s, u"V"_s, u"--field"_s,
                   u"User Name=m"_s, u"--secret"_s, u"Password=-"_s},
                  "p", [&waits](const std::stop_token&, std::chrono::milliseconds) { return ++waits < 5; });
        QCOMPARE(run.exit, CtlExit::Refused);
        QCOMPARE(run.error, "The mount was cancelled. The half-made virtual directory was removed.\n");
        QVERIFY(service->VirtualDirectories().empty());
    }
};

BTASK_TEST(MountCommandsTest);
#include "MountCommandsTest.moc"
