// Labels: threads
#include "service/VirtualDirectories.h"
#include "service/AccountQuota.h"
#include "service/LoginCard.h"
#include "service/VDirLogin.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"
#include "zep/Mui.h"

#include <QFile>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";
const VDirRecord Photos{u"Photos"_s, u"{C}"_s, u"1"_s, QString::fromLatin1(Provider)};

/// "name=value" of each field; "none" for no card.
QString FieldsOf(const QByteArray& answer) {
    const auto fields = ParseLoginCard(answer);
    QStringList texts;
    for (const CardField& field : fields.value_or(std::vector<CardField>()))
        texts += field.name + u'=' + field.value;
    return fields ? texts.join(u'|') : u"none"_s;
}

QByteArray Quota(qint64 used, qint64 allocated) {
    return "<D:quota-used-bytes>" + QByteArray::number(used) + "</D:quota-used-bytes><allocated-x> " +
           QByteArray::number(allocated) + "<";
}

} // namespace

class VirtualDirectoriesTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { ZEPMuiInitialize(); }

    void namesAreChecked_data() {
        const Columns<QString, QString> row("name", "refusal");
        const QString characters = u"Virtual Directory name can only contain alphanumeric characters or '.', "
                                   "'-', '_','(',')' and '#'!"_s;
        const QString taken = u"There is a Virtual Directory with the same name!"_s;
        row("Räume 2 (new)-_.#", "");
        row("", "Virtual Directory Name Can Not Be Empty!");
        row("a/b", characters);
        row("a&b", characters);
        row("a\tb", characters);
        row("50%", characters);
        row("pHOTOS", taken);
        row("Photos ", "");
    }

    void namesAreChecked() {
        const auto [name, refusal] = Fetched<QString, QString>();
        QCOMPARE(VDirNameRefusal(name, {Photos}), refusal);
        const bool ownName = name == "pHOTOS"_L1; // in other letters it is no other directory's
        QCOMPARE(RenameRefusal(u"Photos"_s, name, {Photos}), ownName ? QString() : refusal);
    }

    void commandsAreSentAsTold() {
        ServiceFixture service;
        service->SetVirtualDirectories({{"Photos #1", "{C}", 3, Provider}});
        const ServiceClient client;
        QVERIFY(RequestVdirListAs(client, 7));
        QVERIFY(ForceRelogin(client, u"Photos #1"_s));
        QVERIFY(RenameVDir(client, u"Photos #1"_s, u"New (2)"_s));
        QVERIFY(DismountVDir(client, u"New (2)"_s));
        QCOMPARE(service.RequestLines(),
                 QStringList({u"GET /profile/7?PMCMethod=GetVdirList"_s,
                              u"GET /profile/?PMCMethod=ForceRelogin&VDirName=Photos%20%231"_s,
                              u"MOVE /resources/Photos%20%231?Destination=/resources/New%20(2)"_s,
                              u"GET /profile/?PMCMethod=RemoveNode"_s}));
        QCOMPARE(QByteArray(service->Requests().back().body.c_str()),
                 QByteArray("<ZEPProfileReq><NodeContainer>Resources/VDirs</NodeContainer><NodeIDFieldName>"
                            "Display.Name</NodeIDFieldName><NodeIDFieldValue>New (2)</NodeIDFieldValue>"
                            "</ZEPProfileReq>"));
        QVERIFY(client.GetVdirList()->empty());
    }

    void namesThatCannotBeSentAreRefused() {
        QVERIFY(!ReloginRefusal(u"a&b"_s).isEmpty() && !ReloginRefusal(u"a%41"_s).isEmpty());
        for (const char* odd : {"a?b", "", "..", "a%41", "a/"})
            QVERIFY2(!RenameRefusal(QString::fromLatin1(odd), u"b"_s, {}).isEmpty(), odd);
        QVERIFY(!RenameRefusal(u"a"_s, u".."_s, {}).isEmpty());
        QVERIFY(RenameRefusal(u"a&b"_s, u"b"_s, {}).isEmpty()); // the way to a name that can be used
    }

    void loginsEndAsTheyDo_data() {
        const Columns<QString, QString, LoginEnd, QString, int> row("login", "fault", "end", "words",
                                                                    "polls");
        using enum LoginEnd;
        row("in", "in", "none", LoggedIn, "", 0);
        row("refused", "refused:No such account", "none", Failed, "No such account", 0);
        row("refused without words", "refused:", "none", Failed, "Login Failed", 0);
        row("words that are not read", "refused:No", "deny:500@/settings/", Failed, "Login Failed", 0);
        row("no plug-in", "no-plugin", "none", NoPlugin, "Specified plugin can not be located!", 0);
        row("never", "never", "none", GaveUp, "", 4);
        row("down", "in", "refuse", Silent, "", 2);
        row("refusing", "in", "deny:500", Silent, "", 2);
    }

    void loginsEndAsTheyDo() {
        const auto [login, fault, end, words, polls] = Fetched<QString, QString, LoginEnd, QString, int>();
        ServiceFixture service;
        service->SetVirtualDirectories({{"Photos", "{C}", 1, Provider}});
        QVERIFY(service->SetLogin(login.toStdString()));
        const ServiceClient client;
        QVERIFY(ForceRelogin(client, u"Photos"_s));
        QVERIFY(service->SetFault(fault.toStdString()));
        int noted = 0;
        const LoginOutcome outcome =
            WaitForLogin(client, Photos, [&noted](int count) { noted = count; }, {}, {5, 3, {}});
        QCOMPARE(outcome.end, end);
        if (!words.isEmpty())
            QCOMPARE(outcome.words, words);
        QCOMPARE(noted, polls);
    }

    void aLoginIsWaitedForAndGivenUp() {
        ServiceFixture service;
        service->SetVirtualDirectories({{"Photos", "{C}", 1, Provider}});
        QVERIFY(service->SetLogin("after:10"));
        const ServiceClient client;
        QVERIFY(ForceRelogin(client, u"Photos"_s));
        const auto advance = [&](int count) {
            if (count == 2)
                service->Advance(std::chrono::seconds(11));
        };
        QCOMPARE(WaitForLogin(client, Photos, advance, {}, {5, 3, {}}).end, LoginEnd::LoggedIn);
        QVERIFY(service->SetLogin("never"));
        QVERIFY(ForceRelogin(client, u"Photos"_s));
        std::stop_source stop;
        const auto cancel = [&stop](int) { stop.request_stop(); };
        const LoginPace slow{120, 10, std::chrono::hours(1)};
        QCOMPARE(WaitForLogin(client, Photos, cancel, stop.get_token(), slow).end, LoginEnd::Cancelled);
    }

    void usesAreFoundByName_data() {
        const Columns<QString, bool> row("fault", "known");
        row("none", true);
        row("deny:500@/settings/EncFolderList", false);
    }

    void usesAreFoundByName() {
        const auto [fault, known] = Fetched<QString, bool>();
        ServiceFixture service;
        service->SetSetting("DropFolders", "photos\t/home/me/Pictures\nPhotos2\t/home/me/Other");
        service->SetSetting("EncFolderList", "/Photos2/a\n/Other/Photos");
        service->SetSetting("CompressFolderList", "/PHOTOS/raw\n/Photos");
        QVERIFY(service->SetFault(fault.toStdString()));
        const VDirUses uses = ReadVDirUses(ServiceClient(), u"Photos"_s);
        QCOMPARE(uses.known, known);
        QCOMPARE(uses.sentences, QStringList({u"Synchronised with it: /home/me/Pictures."_s,
                                              u"Compressed in it: /PHOTOS/raw, /Photos."_s}));
    }

    void chunksAreKept() {
        ServiceFixture service;
        const ServiceClient client;
        const ChunkSettings none = ReadChunkSettings(client, u"Photos"_s);
        QVERIFY(!none.enabled && none.known && none.size == 20);
        QVERIFY(WriteChunkEnabled(client, u"Photos"_s, true) && WriteChunkSize(client, u"Photos"_s, 0));
        QCOMPARE(service->Setting("Chunk Photos"), std::optional<std::string>("true"));
        QCOMPARE(service->Setting("Chunk Size Photos"), std::optional<std::string>("20"));
        service->SetSetting("Chunk Size Photos", "many");
        const ChunkSettings odd = ReadChunkSettings(client, u"Photos"_s);
        QVERIFY(odd.enabled && odd.size == 20);
        service->SetFault(devservice::HttpFault::Refuse);
        QVERIFY(!ReadChunkSettings(client, u"Photos"_s).known);
    }

    void cardsHideWhatIsNotForPeople_data() {
        const Columns<QByteArray, QString, QString> row("fields", "branded", "shown");
        const QByteArray id = "FieldId=\"{F}\" ";
        row("plain", "<F " + id + "FieldName=\"User\" FieldData=\"w6RuZGU=\"/>", "", "User=ände");
        row("encrypted", "<F " + id + "FieldName=\"Key\" Encrypted=\"true\" FieldData=\"c2VjcmV0\"/>", "",
            "Key=******");
        row("hidden", "<F " + id + "FieldName=\"X\" Hidden=\"True\"/><F FieldName=\"Y\"/><F " + id + "/>", "",
            "");
        row("branded", "<F " + id + "FieldName=\"X\"/><F FieldId=\"{G}\" FieldName=\"Y\"/>", "{f}", "Y=");
        const QByteArray ofServer = "<F FieldId=\"{6e451dbb-5185-4630-8247-290FDA8E3507}\" FieldName=\"X\"/>";
        row("of another product", ofServer, "", "X=");
        row("of the server's", ofServer, "{A86125B1-2FBB-4804-B1D4-B35776BBD665}", "");
        row("damaged data", "<F " + id + "FieldName=\"X\" FieldData=\"%%%\"/>", "", "X=");
    }

    void cardsHideWhatIsNotForPeople() {
        const auto [fields, branded, shown] = Fetched<QByteArray, QString, QString>();
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"branding.xml"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("<BrandingTexts><Branding Number=\"139\">" + branded.toUtf8() +
                   "</Branding></BrandingTexts>");
        file.close();
        ZEPMuiInitialize(file.fileName().toStdU16String());
        QCOMPARE(FieldsOf("<SafeCard>" + fields + "</SafeCard>"), shown);
        QCOMPARE(FieldsOf("<Card>" + fields + "</Card>"), u"none"_s);
        QCOMPARE(FieldsOf("<SafeCard>" + fields), u"none"_s);
    }

    void quotasAreTold_data() {
        const Columns<QByteArray, QString> row("answer", "texts");
        constexpr qint64 GB = qint64(1) << 30;
        row("TB", Quota(GB, 2048 * GB), " 2.000 TB| 0.001 TB| 1.999 TB");
        row("exactly 1 TB", Quota(0, 1024 * GB), "1024.000 GB| 0.000 GB|1024.000 GB");
        row("exactly 1 GB", Quota(2 * GB, GB), " 1.000 GB| 2.000 GB|-1.000 GB");
        row("MB", Quota(GB / 1024, GB - 1), "1024.000 MB| 1.000 MB|1023.000 MB");
        row("exactly 1 MB", Quota(0, GB / 1024), "||");
        row("no number", "<used-x>many<allocated-y>2147483648", " 2.000 GB| 0.000 GB| 2.000 GB");
        row("no sign", "used-1 allocated-2", "none");
        row("one word", "<used-x>1", "none");
        row("beyond", "<used-x>-99999999999999999999<allocated-y>99999999999999999999",
            "8388608.000 TB|-8388608.000 TB|8388608.000 TB");
    }

    void quotasAreTold() {
        const auto [answer, texts] = Fetched<QByteArray, QString>();
        const auto quota = ParseQuota(answer);
        const QuotaTexts told = quota ? TextsOf(*quota) : QuotaTexts();
        QCOMPARE(quota ? QStringList({told.total, told.used, told.available}).join(u'|') : u"none"_s, texts);
    }
};

BTASK_TEST(VirtualDirectoriesTest);
#include "VirtualDirectoriesTest.moc"
