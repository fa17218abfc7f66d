// Labels: threads
#include "service/MountRun.h"
#include "service/VirtualDirectories.h"
#include "support/RegistryText.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

#include <QFile>
#include <QUuid>

#include <thread>

using namespace Qt::Literals::StringLiterals;

namespace {

const StorageProvider Provider{u"Fennmoor Storage"_s,
                               u"{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}"_s,
                               {{u"User"_s, u"{1}"_s, {}, {}, false, false, false},
                                {u"Password"_s, u"{2}"_s, {}, {}, true, false, false}},
                               u"<Server Port=\"8443\">vault</Server>"_s};

/// Flags of fields: e encrypted, h hidden, m e-mail.
QString Told(const std::vector<StorageProvider>& providers) {
    QStringList all;
    for (const StorageProvider& provider : providers) {
        QStringList parts{provider.displayName, provider.spId};
        for (const LoginField& field : provider.fields)
            parts.append(QStringList{field.name, field.id, field.value, field.beginWith}.join(u',') + u","_s +
                         (field.encrypted ? u"e"_s : QString()) + (field.hidden ? u"h"_s : QString()) +
                         (field.emailFormat ? u"m"_s : QString()));
        all.append(parts.join(u" "_s) + u" "_s + provider.nodeXml);
    }
    return all.join(u"; "_s);
}

MountOrder Order() {
    MountOrder order{Provider, u"Photos"_s, {}, false, false};
    order.card = MakeCard(order.name, Provider.fields, {u"mara"_s, u"secret"_s});
    return order;
}

/// Runs the mount to its end; `before` is called before each step, counted from 0.
MountOutcome Run(const MountOrder& order, const std::function<void(int)>& before = {},
                 const std::stop_source& stop = {}) {
    MountRun run(ServiceClient(), order);
    for (int step = 0;; ++step) {
        if (before)
            before(step);
        if (stop.stop_requested())
            run.CallOff();
        if (!run.Next(stop.get_token()))
            return run.Outcome();
    }
}

/// The methods that were asked for, equal ones in a row once with their number.
QString Methods(const QStringList& lines) {
    QStringList methods;
    int times = 0;
    for (const QString& line : lines) {
        const QString method = line.section(u'=', -1).section(u'/', -1);
        const QString before = methods.isEmpty() ? QString() : methods.last().section(u'*', 0, 0);
        times = before == method ? times + 1 : 1;
        if (times > 1)
            methods.removeLast();
        methods.append(times > 1 ? u"%1*%2"_s.arg(method).arg(times) : method);
    }
    return methods.join(u' ');
}

} // namespace

class MountTest : public QObject {
    Q_OBJECT

private slots:
    void readsProviders_data() {
        const Columns<QString, QString> row("answer", "providers");
        const auto list = [](const char* inner) {
            return u"<VirtualStorageProviders>%1</VirtualStorageProviders>"_s.arg(QString::fromUtf8(inner));
        };
        row("all that a field says",
            list("<VirtualStorage DisplayName='A' SPID='{1}'><SPID>{1}</SPID><SafeCardTemplate>"
                 "<Field Name='Mail' FieldId='{f}' Value='x' BeginWith='p' EmailFormat='true' Hidden='TRUE' "
                 "Encrypted='True'/><Field/></SafeCardTemplate></VirtualStorage>"),
            "A {1} Mail,{f},x,p,ehm ,,,, ");
        row("further elements as they stand, in their order",
            list("<P SPID='2' DisplayName='B'><Server a='1&amp;2'>h<i/></Server><SPID/><SafeCardTemplate/>"
                 "<Port>8</Port></P>"),
            "B 2 <Server a=\"1&amp;2\">h<i/></Server><Port>8</Port>");
        row("markup and doubles",
            list("<P SPID='3' DisplayName='C'><SafeCardTemplate><F Name='&lt;b&gt;&amp;'/><F "
                 "Name='&lt;b&gt;&amp;'/></SafeCardTemplate></P>"),
            "C 3 <b>&,,,, <b>&,,,, ");
        row("no name or no identifier",
            list("<P SPID='1'/><P DisplayName='D'/><P DisplayName='E' SPID='5'/>"), "E 5 ");
        row("none", list(""), "");
        row("cut", "<VirtualStorageProviders><P", "no list");
        row("another document", "<Response/>", "no list");
    }

    void readsProviders() {
        const auto [answer] = Fetched<QString>();
        const auto providers = ParseProviders(answer.toUtf8());
        QTEST(providers ? Told(*providers) : u"no list"_s, "providers");
    }

    void readsProviderFiles_data() {
        const Columns<QByteArray, QString> row("content", "result");
        row("whole",
            "<VirtualStorage DisplayName='F' SPID='{9}'><SafeCardTemplate><F Name='U'/>"
            "</SafeCardTemplate></VirtualStorage>",
            "F {9} U,,,, ");
        row("name and identifier only", "<VirtualStorage DisplayName='F' SPID='{9}'/>", "F {9} ");
        row("no identifier", "<VirtualStorage DisplayName='F'/>",
            "The file names no storage provider and its identifier.");
        row("another document", "<Other/>", "The file names no storage provider and its identifier.");
        row("too long", QByteArray((1 << 20) + 1, ' '), "The file is too long to be a provider description.");
    }

    void readsProviderFiles() {
        const auto [content] = Fetched<QByteArray>();
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"a.brenviasp"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(content);
        file.close();
        const ProviderFile read = ReadProviderFile(file.fileName().toStdU16String());
        QTEST(read.provider ? Told({*read.provider}) : read.failure, "result");
        QCOMPARE(ReadProviderFile(folder.path().toStdU16String()).failure, u"There is no such file."_s);
    }

    void makesDocuments() {
        QCOMPARE(CardDocument(u"My (1)"_s, u"{C}"_s, Provider.fields, {u"m\u00FCller"_s, u"p<&"_s}),
                 u"<SafeCard><Name>Login Info - My (1)</Name><Id>{C}</Id><Fields>"
                 "<Field><FieldName>User</FieldName><FieldData>bcO8bGxlcg==</FieldData><FieldId>{1}</FieldId>"
                 "<Encrypted>False</Encrypted></Field>"
                 "<Field><FieldName>Password</FieldName><FieldData>cDwm</FieldData><FieldId>{2}</FieldId>"
                 "<Encrypted>True</Encrypted></Field></Fields>"_s);
        QCOMPARE(CardDocument(u"N"_s, u"{C}"_s, {}, {}),
                 u"<SafeCard><Name>Login Info - N</Name><Id>{C}</Id><Fields></Fields>"_s);
        const QString node =
            VDirNode(Provider, u"My (1)"_s, u"{C}"_s, QDateTime(QDate(2026, 1, 2), QTime(3, 4, 5)));
        QCOMPARE(node, u"<VDir><SafeCardId>{C}</SafeCardId><Display.Name>My (1)</Display.Name>"
                       "<SPID>{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}</SPID><HostId></HostId>"
                       "<MountTime>2026-1-2 3:4:5</MountTime><Server Port=\"8443\">vault</Server></VDir>"_s);
        QCOMPARE(AddNodeDocument(u"<VDir>\u00E4 1</VDir>"_s),
                 u"<ZEPProfileReq><NodeContainer>Resources/VDirs</NodeContainer><NodeXML>"
                 "%3CVDir%3E%C3%A4%201%3C%2FVDir%3E</NodeXML></ZEPProfileReq>"_s);
    }

    void aCardIsNewWhenAnythingInItIs() {
        const QStringList values{u"mara"_s, u"secret"_s};
        const LoginCard card = MakeCard(u"V"_s, Provider.fields, values);
        QVERIFY(!QUuid(card.id).isNull());
        QCOMPARE(QUuid(card.id).toString(QUuid::WithBraces).toUpper(), card.id);
        QCOMPARE(MakeCard(u"V"_s, Provider.fields, values, card).id, card.id);
        QVERIFY(MakeCard(u"W"_s, Provider.fields, values, card).id != card.id);
        QVERIFY(MakeCard(u"V"_s, Provider.fields, {u"mara"_s, u"Secret"_s}, card).id != card.id);
    }

    void checksLogins_data() {
        // Flags as above, and a prefix behind a colon; values between bars.
        const Columns<QString, QString, QString> row("fields", "values", "refusal");
        row("|", "a|b", "");
        row("|e", "a|", "1 One or More Fields Is Empty.");
        row("|e|", "|", "0 One or More Fields Is Empty.");
        row("h|", "|b", "");
        row("hm:x|", "|b", "");
        row("m", "a", "0 Email format required.");
        row("m|m", "@|b", "1 Email format required.");
        row("m:HL-", "b", "0 Email format required.");
        row("m:HL-", "b@", "0 Field needs to begin with HL-");
        row(":HL-", "hl-1", "0 Field needs to begin with HL-");
        row(":HL-", "HL-", "");
        row("h:HL-", "b", "0 Field needs to begin with HL-");
    }

    void checksLogins() {
        const auto [fields, values] = Fetched<QString, QString>();
        std::vector<LoginField> all;
        for (const QString& each : fields.split(u'|')) {
            const QString flags = each.section(u':', 0, 0);
            all.push_back({{},
                           {},
                           {},
                           each.section(u':', 1),
                           flags.contains(u'e'),
                           flags.contains(u'h'),
                           flags.contains(u'm')});
        }
        const auto refusal = CheckLogin(all, values.split(u'|'));
        QTEST(refusal ? u"%1 %2"_s.arg(refusal->field).arg(refusal->why) : QString(), "refusal");
    }

    void asksAboutMarkup() {
        QCOMPARE(MountQuestions(Provider, u"Photos"_s), QStringList());
        StorageProvider odd = Provider;
        odd.spId = u"<sp>"_s;
        odd.fields[0].name = u"User & Co"_s;
        odd.fields[1].id = u"a<b"_s;
        const QStringList questions = MountQuestions(odd, u"Photos"_s);
        QCOMPARE(questions.size(), 3);
        QCOMPARE(questions[1], u"The field's name \"User & Co\" holds \"&\", which the service may not "
                               "understand. Do you really want to send it?"_s);
    }

    void runs_data() {
        using enum MountOutcome::Place;
        const Columns<QString, QString, QString, QString, MountOutcome::Place> row(
            "login", "fault", "methods", "why", "lookAt");
        const QString card = u"addnewcard AddNewNode "_s;
        const QString validating = u"It stopped when the virtual directory was being validated. "_s;
        const QString removed = validating + u"The half-made virtual directory was removed."_s;
        row("in at once", "in", "", card + u"GetVDirStatus"_s, "", Nothing);
        row("refused", "refused:Quota", "", card + u"GetVDirStatus Photos GetVdirList RemoveNode"_s,
            u"Quota "_s + removed, Login);
        row("refused without a word", "refused:", "", card + u"GetVDirStatus Photos GetVdirList RemoveNode"_s,
            u"Login Failed "_s + removed, Login);
        row("no plug-in", "no-plugin", "", card + u"GetVDirStatus GetVdirList RemoveNode"_s,
            u"Specified plugin can not be located! "_s + removed, MountOutcome::Place::Provider);
        row("never", "never", "", card + u"GetVDirStatus*134 GetVdirList RemoveNode"_s,
            u"Failed to mount virtual directory. Please double check login/setup information or report "
            "issues to support@brenvia.example "_s +
                removed,
            Login);
        row("card refused", "in", "deny:500@addnewcard", "addnewcard",
            "Unable To Add Login Info for the Virtual Directory! It stopped when the login card was to be "
            "created. The service answered with status 500.",
            Login);
        row("node refused", "in", "deny:500@AddNewNode", card + u"GetVdirList"_s,
            "Failed to create virtual directory! It stopped when the virtual directory was to be created. "
            "The service answered with status 500.",
            Name);
        row("node taken, its answer lost", "in", "status:500@AddNewNode",
            card + u"GetVdirList GetVDirStatus"_s, "", Nothing);
        row("not removed", "refused:Quota", "deny:500@RemoveNode",
            card + u"GetVDirStatus Photos GetVdirList RemoveNode"_s,
            u"Quota "_s + validating +
                u"The half-made virtual directory could not be removed: dismount \"Photos\" in the list."_s,
            Login);
    }

    void runs() {
        const auto [login, fault] = Fetched<QString, QString>();
        ServiceFixture service;
        QVERIFY(service->SetLogin(login.toStdString()));
        if (!fault.isEmpty())
            QVERIFY(service->SetFault(fault.toStdString()));
        const MountOutcome outcome = Run(Order());
        QTEST(Methods(service.RequestLines()), "methods");
        QTEST((outcome.why + u' ' + outcome.where).trimmed(), "why");
        QTEST(outcome.lookAt, "lookAt");
        QCOMPARE(outcome.end == MountOutcome::End::Mounted, outcome.why.isEmpty());
    }

    void anAcceptedCardIsNotSentAgain() {
        ServiceFixture service;
        MountOrder order = Order();
        service->SetLogin("refused:No");
        QVERIFY(Run(order).cardAccepted);
        service->SetLogin("in");
        service->ForgetRequests();
        order.cardAccepted = true;
        QCOMPARE(Run(order).end, MountOutcome::End::Mounted);
        QCOMPARE(Methods(service.RequestLines()), u"AddNewNode GetVDirStatus"_s);
    }

    void aServiceThatDiesIsTold_data() {
        const Columns<int, QString> row("step", "where");
        row(0, "It stopped when the login card was to be created. The service did not answer.");
        row(1, "It stopped when the virtual directory was to be created. The service did not answer. "
               "The list will show whether it was created.");
        row(2, "It stopped when the virtual directory was being validated. The half-made virtual directory "
               "could not be removed: dismount \"Photos\" in the list.");
    }

    void aServiceThatDiesIsTold() {
        const auto [step] = Fetched<int>();
        ServiceFixture service;
        service->SetLogin("never");
        const MountOutcome outcome = Run(Order(), [&, step = step](int at) {
            if (at == step)
                service->Stop();
        });
        QTEST(outcome.where, "where");
        QCOMPARE(outcome.end, MountOutcome::End::Failed);
    }

    void calledOffItTakesBackWhatItMade_data() {
        const Columns<int, QString> row("step", "methods");
        row(0, "");
        row(1, "addnewcard");
        row(2, "addnewcard AddNewNode RemoveNode");
        row(5, "addnewcard AddNewNode GetVDirStatus*3 RemoveNode");
    }

    void calledOffItTakesBackWhatItMade() {
        const auto [step] = Fetched<int>();
        ServiceFixture service;
        service->SetLogin("never");
        std::stop_source stop;
        const MountOutcome outcome = Run(
            Order(),
            [&, step = step](int at) {
                if (at == step)
                    stop.request_stop();
            },
            stop);
        QCOMPARE(outcome.end, MountOutcome::End::CalledOff);
        QTEST(Methods(service.RequestLines()), "methods");
        QVERIFY(service->VirtualDirectories().empty());
    }

    /// The name was taken by someone else while the request for ours was on its way.
    void calledOffItLeavesAnothersDirectory() {
        ServiceFixture service;
        service->SetVirtualDirectories({{"photos", "{other}", 3, Provider.spId.toStdString()}});
        QVERIFY(service->SetFault("hang@AddNewNode"));
        std::stop_source stop;
        MountRun run(ServiceClient(), Order());
        run.Next({});
        const std::jthread stopper([&] {
            while (service->Requests().size() < 2)
                std::this_thread::yield();
            stop.request_stop();
        });
        QVERIFY(run.Next(stop.get_token()));
        service->ClearFaults();
        run.CallOff();
        QCOMPARE(service->VirtualDirectories().size(), 1U);
    }

    void aProvidersMessageIsRead() {
        ServiceFixture service;
        const RegistryText message(platform::RegistryRoot::CurrentUser, u"SOFTWARE\\Brenvia\\Settings"_s,
                                   u"Msg-"_s + Provider.spId + u"/Photos"_s, u"Keep this: 4711"_s);
        QCOMPARE(Run(Order()).message, u"Keep this: 4711"_s);
    }

    void whatFollowsAMount() {
        ServiceFixture service;
        MountOrder order = Order();
        QCOMPARE(Run(order).end, MountOutcome::End::Mounted);
        service->ForgetRequests();
        QCOMPARE(FinishMount(ServiceClient(), order), QString());
        order.publish = true;
        QCOMPARE(FinishMount(ServiceClient(), order), QString());
        QCOMPARE(Methods(service.RequestLines()), u"prefetchfolder*2 ConsolePublish"_s);
        for (const devservice::ReceivedRequest& request : service->Requests())
            QCOMPARE(request.body, std::string("/Photos\0", 8));
        QVERIFY(service->SetFault("deny:500@ConsolePublish"));
        QCOMPARE(FinishMount(ServiceClient(), order), u"\"Photos\" is mounted. It could not be published."_s);
    }
};

BTASK_TEST(MountTest);
#include "MountTest.moc"
