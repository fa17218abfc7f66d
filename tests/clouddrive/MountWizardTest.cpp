// Labels: threads painting
#include "clouddrive/MountWizard.h"

#include "support/PageFixture.h"
#include "support/RegistryText.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"

#include <QCheckBox>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>

using namespace Qt::Literals::StringLiterals;

namespace {

const QString ListMessage =
    u"Unable to get virtual directory list, please check the application is still running"_s;
const QString Stopped = u" It stopped when the virtual directory was being validated. "_s;
const QString AskToStop = u"Do you really want to stop mounting \"Photos\"?\n"
                          "The half-made virtual directory is removed. What you have entered is kept."_s;
const QString NotRemoved =
    u"The half-made virtual directory could not be removed: dismount \"Photos\" in the list."_s;
const QString Removed = u"The half-made virtual directory was removed."_s;

/// A wizard before the development service. Its waits between two steps end at once, or are held.
struct Mounting : PageFixture<> {
    Mounting() {
        service->SetVirtualDirectories({{"Home", "{card}", 3, "{sp}"}});
        service->ForgetRequests();
        const MountPace pace = [this](QObject&, std::chrono::milliseconds, std::function<void()> then) {
            if (holds)
                held = std::move(then);
            else
                then();
        };
        rider = std::make_unique<WizardRider>(new CMountWizard(console, nullptr, pace), reader);
    }

    bool Ride(const QString& script) { return rider->Ride(script); }
    /// To the last page, with a login by user name and password.
    bool RideToTheEnd() {
        return Ride(
            u"step | Storage provider=Fennmoor Storage | Virtual directory name=Photos | Next | steps | "
            "User Name=mara | Password=secret | Next | steps | page Mount Virtual Directory Now"_s);
    }
    /// The node is made, and its login does not come.
    bool RideToAWaitingLogin() {
        service->SetLogin("never");
        holds = true;
        if (!RideToTheEnd() || !Ride(u"Finish | step"_s))
            return false;
        held();
        return Ride(u"step"_s);
    }
    /// What was sent that changes something.
    QStringList Sent() const {
        QStringList sent;
        for (const QString& line : service.RequestLines())
            for (const char* method :
                 {"addnewcard", "AddNewNode", "RemoveNode", "prefetchfolder", "ConsolePublish"})
                if (line.endsWith(QLatin1String(method)))
                    sent.append(QString::fromLatin1(method));
        return sent;
    }
    /// The login cards' documents, as they were sent.
    QStringList Cards() {
        QStringList cards;
        for (const devservice::ReceivedRequest& request : service.Service().Requests())
            if (QString::fromStdString(request.target).endsWith("addnewcard"_L1))
                cards.append(QString::fromStdString(request.body));
        return cards;
    }

    std::function<void()> held;
    bool holds = false;
    std::unique_ptr<WizardRider> rider;
};

} // namespace

class MountWizardTest : public QObject {
    Q_OBJECT

private slots:
    void rides_data() {
        // A message is expected as often as it is named; the script goes through the first two pages.
        const Columns<QString, QStringList, QString> row("case", "messages", "script");
        const QString named =
            u"step | Storage provider=%1 | Virtual directory name=Photos | Next | steps | "_s;
        row("no provider", {u"Need To Select One Service Provider To Continue!"_s},
            "busy | off Next | step | on Next | Virtual directory name=Photos | Next | focus Storage "
            "provider | "
            "Virtual directory name==Photos");
        row("names in the told order",
            {u"Virtual Directory Name Can Not Be Empty!"_s,
             u"Virtual Directory name can only contain alphanumeric characters or '.', '-', '_','(',')' and '#'!"_s,
             u"There is a Virtual Directory with the same name!"_s},
            "step | Storage provider=Tarnwick Vault | Next | Virtual directory name=a/b | key Return | focus "
            "Virtual directory name | Virtual directory name=hOmE | Next | says Checking the name... | step "
            "| "
            "focus Virtual directory name | Virtual directory name=Ho me (1) | Next | steps | page Login "
            "Information For Virtual Directory");
        row("login fields in their order, and Back loses nothing",
            {u"One or More Fields Is Empty."_s, u"Email format required."_s},
            named.arg(u"Quillmoor Box"_s) +
                u"Password=p | Next | focus E-mail | E-mail=mara | Next | says Email format required. | "
                "E-mail=mara@ | Back | Storage provider=Fennmoor Storage | Next | steps | User Name== | Back "
                "| "
                "Storage provider=Quillmoor Box | Next | steps | E-mail==mara@ | Password==p | Next | steps "
                "| page "
                "Mount Virtual Directory Now"_s);
        row("a prefix, and what the provider proposes", {u"Field needs to begin with HL-"_s},
            named.arg(u"Harbourline Objects"_s) +
                u"Container==backups | Access Key=hl-1 | Secret Key=s | Next | focus Access Key | Access "
                u"Key=HL-1 | "
                "Next | steps | page Mount Virtual Directory Now | Access Key==HL-1 | Secret Key==******"_s);
    }

    void rides() {
        const auto [name, messages, script] = Fetched<QString, QStringList, QString>();
        Mounting mounting;
        for (const QString& message : messages)
            mounting.prompts.ExpectMessage(message);
        QVERIFY(mounting.Ride(script));
        QCOMPARE(mounting.Sent(), QStringList());
    }

    void mounts() {
        Mounting mounting;
        QVERIFY(mounting.RideToTheEnd());
        QVERIFY(mounting.Ride(u"Password==****** | Finish | busy | off Back | step | says We are now "
                              u"mounting the virtual directory. "
                              "This may take a few minutes. Please wait... | steps | finished"_s));
        QCOMPARE(mounting.Sent(), QStringList({u"addnewcard"_s, u"AddNewNode"_s, u"prefetchfolder"_s}));
        QCOMPARE(mounting.service->VirtualDirectories().back().name, "Photos");
    }

    void publishesWhereThatIsOffered_data() {
        const Columns<QByteArray, bool> row("setting", "offered");
        row("1", true);
        row("0", false);
    }

    void publishesWhereThatIsOffered() {
        const auto [setting, offered] = Fetched<QByteArray, bool>();
        Mounting mounting;
        mounting.service->SetSetting("ConsoleRecords", setting.toStdString());
        QVERIFY(mounting.RideToTheEnd());
        auto* publish = mounting.rider->Sheet()->findChild<QCheckBox*>();
        QCOMPARE(publish->isEnabled(), offered);
        publish->click();
        QVERIFY(mounting.Ride(u"Finish | steps | finished"_s));
        QCOMPARE(mounting.Sent().contains(u"ConsolePublish"_s), offered);
    }

    void aProvidersMessageGoesToTheClipboard() {
        Mounting mounting;
        const RegistryText message(platform::RegistryRoot::CurrentUser, u"SOFTWARE\\Brenvia\\Settings"_s,
                                   u"Msg-{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}/Photos"_s, u"Key 4711"_s);
        mounting.prompts.ExpectMessage(
            u"Key 4711\n\n The above message will be copied to clipboard upon clicking OK."_s);
        mounting.prompts.Hold();
        QVERIFY(mounting.RideToTheEnd());
        QVERIFY(mounting.Ride(u"Finish | steps | page Mount Virtual Directory Now"_s));
        QCOMPARE(mounting.prompts.clipboardText, QString());
        mounting.prompts.Release();
        QCOMPARE(mounting.prompts.clipboardText, u"Key 4711"_s);
        QVERIFY(mounting.Ride(u"steps | finished"_s));
    }

    void failuresKeepAll_data() {
        // What is wrong, what the box says, what else the line does, the field of the summary, and on the way
        // back.
        const Columns<QString, QString, QString, QString, QString, QString> row("login", "fault", "why",
                                                                                "where", "field", "back");
        row("login refused", "refused:Quota is used up.", "", "Quota is used up.", Stopped + Removed,
            "Password", "focus Password");
        row("no plug-in", "no-plugin", "", "Specified plugin can not be located!", Stopped + Removed,
            "Storage provider", "Back | focus Storage provider");
        row("card", "in", "deny:500@addnewcard", "Unable To Add Login Info for the Virtual Directory!",
            " It stopped when the login card was to be created. The service answered with status 500.",
            "Password", "focus Password");
        row("node", "in", "deny:500@AddNewNode", "Failed to create virtual directory!",
            " It stopped when the virtual directory was to be created. The service answered with status 500.",
            "Virtual directory name", "Back | focus Virtual directory name");
    }

    void failuresKeepAll() {
        const auto [login, fault, why, where, field, back] =
            Fetched<QString, QString, QString, QString, QString, QString>();
        Mounting mounting;
        QVERIFY(mounting.service->SetLogin(login.toStdString()));
        QVERIFY(mounting.RideToTheEnd());
        if (!fault.isEmpty())
            QVERIFY(mounting.service->SetFault(fault.toStdString()));
        mounting.prompts.ExpectMessage(why);
        QVERIFY(mounting.Ride(
            u"Finish | steps | page Mount Virtual Directory Now | on Back | on Finish | says "_s + why +
            where));
        QVERIFY(
            mounting.Ride(u"focus %1 | Back | User Name==mara | Password==secret | %2"_s.arg(field, back)));
        QCOMPARE(mounting.prompts.details.last(), where.trimmed());
    }

    void aCardIsSentOnceUnlessItChanges() {
        Mounting mounting;
        mounting.service->SetLogin("refused:No");
        for (int times = 0; times < 3; ++times)
            mounting.prompts.ExpectMessage(u"No"_s);
        QVERIFY(mounting.RideToTheEnd());
        QVERIFY(mounting.Ride(u"Finish | steps | Finish | steps"_s));
        QCOMPARE(mounting.Cards().size(), 1);
        QVERIFY(
            mounting.Ride(u"Back | Next | steps | Back | Password=other | Next | steps | Finish | steps"_s));
        QCOMPARE(mounting.Cards().size(), 2);
        const auto id = [](const QString& card) {
            return card.section(u"<Id>"_s, 1).section(u"</Id>"_s, 0, 0);
        };
        QVERIFY(id(mounting.Cards()[0]) != id(mounting.Cards()[1]));
        mounting.service->SetLogin("in");
        QVERIFY(mounting.Ride(u"Finish | steps | finished"_s));
        QCOMPARE(mounting.Cards().size(), 2);
    }

    void cancelTakesTheNodeBack() {
        Mounting mounting;
        mounting.service->SetLogin("never");
        mounting.holds = true;
        QVERIFY(mounting.RideToTheEnd());
        // Before the node is sent nothing has to be asked.
        QVERIFY(
            mounting.Ride(u"Finish | step | on Cancel | Cancel | steps | says The mount was cancelled. | on "
                          "Finish | Finish | step"_s));
        mounting.held();
        QVERIFY(mounting.Ride(u"step"_s));
        mounting.prompts.ExpectQuestion(AskToStop, false);
        QVERIFY(mounting.Ride(u"Cancel | busy"_s));
        mounting.prompts.ExpectQuestion(AskToStop, true);
        QVERIFY(mounting.Ride(u"key Escape | steps | says The mount was cancelled. "_s + Removed +
                              u" | page Mount Virtual Directory Now | on Finish"_s));
        QCOMPARE(mounting.Sent(), QStringList({u"addnewcard"_s, u"AddNewNode"_s, u"RemoveNode"_s}));
        QCOMPARE(mounting.service->VirtualDirectories().size(), 1U);
        QVERIFY(mounting.prompts.IsPlayed());
    }

    void aWindowThatGoesTakesTheNodeBack() {
        Mounting mounting;
        QVERIFY(mounting.RideToAWaitingLogin());
        QCOMPARE(mounting.service->VirtualDirectories().size(), 2U);
        mounting.rider.reset();
        mounting.reader.StepAll();
        QCOMPARE(mounting.service->VirtualDirectories().size(), 1U);
    }

    void aSilentServiceCanBeTriedAgain() {
        Mounting mounting;
        mounting.service->Stop();
        QVERIFY(mounting.Ride(
            u"step | off Next | says The list of storage providers could not be read. Please check "
            "that the service is running."_s));
        mounting.service->Start();
        QVERIFY(
            mounting.Ride(u"key F5 | step | Storage provider=Fennmoor Storage | Virtual directory name=V"_s));
        mounting.service->Stop();
        mounting.prompts.ExpectMessage(ListMessage);
        QVERIFY(mounting.Ride(u"Next | step | page Provider and Name | Virtual directory name==V"_s));
        mounting.service->Start();
        QVERIFY(mounting.Ride(u"Next | step | page Login Information For Virtual Directory | steps"_s));
        QVERIFY(mounting.Ride(u"User Name=m | Password=p | Next | steps"_s));
        mounting.service->Stop();
        mounting.prompts.ExpectMessage(u"Unable To Add Login Info for the Virtual Directory!"_s);
        QVERIFY(mounting.Ride(u"Finish | steps | on Finish | focus Finish"_s));
        mounting.service->Start();
        QVERIFY(mounting.Ride(u"Finish | steps | finished"_s));
    }

    void aDyingServiceIsToldAndSurvived_data() {
        // After how many steps of the mount it dies.
        const Columns<int, QString, QString> row("steps", "why", "where");
        row("node", 1, "Failed to create virtual directory!",
            " It stopped when the virtual directory was to be created. The service did not answer. The list "
            "will "
            "show whether it was created.");
        row("validation", 3,
            "Failed to mount virtual directory. Please double check login/setup information or report issues "
            "to support@brenvia.example",
            u"."_s + Stopped + NotRemoved);
    }

    void aDyingServiceIsToldAndSurvived() {
        const auto [steps, why, where] = Fetched<int, QString, QString>();
        Mounting mounting;
        mounting.service->SetLogin("never");
        mounting.holds = true;
        QVERIFY(mounting.RideToTheEnd());
        QVERIFY(mounting.Ride(u"Finish | step"_s));
        for (int step = 1; step < steps; ++step) {
            mounting.held();
            QVERIFY(mounting.Ride(u"step"_s));
        }
        mounting.service->Stop();
        mounting.holds = false;
        mounting.held();
        mounting.prompts.ExpectMessage(why);
        QVERIFY(mounting.Ride(u"steps | page Mount Virtual Directory Now | on Back | says "_s + why + where));
        mounting.service->Start();
        mounting.service->SetLogin("in");
        QVERIFY(mounting.Ride(u"Finish | steps | finished"_s));
        QCOMPARE(mounting.service->VirtualDirectories().size(), 2U);
    }

    void cancelBeforeADeadServiceSaysWhatStays() {
        Mounting mounting;
        QVERIFY(mounting.RideToAWaitingLogin());
        mounting.service->Stop();
        mounting.prompts.ExpectQuestion(AskToStop, true);
        QVERIFY(mounting.Ride(u"Cancel | steps | on Finish | says The mount was cancelled. "_s + NotRemoved));
    }

    void pagesThatAreNotReadCanBeReadAgain() {
        Mounting mounting;
        QVERIFY(mounting.Ride(u"step | Storage provider=Fennmoor Storage | Virtual directory name=V | Next | "
                              "step | page Login Information For Virtual Directory"_s));
        mounting.service->Stop();
        QVERIFY(mounting.Ride(u"step | off Next"_s));
        mounting.service->Start();
        QVERIFY(mounting.Ride(u"key F5 | step | User Name=m | Password=p"_s));
        mounting.service->Stop();
        QVERIFY(mounting.Ride(u"Next | steps | page Mount Virtual Directory Now | on Finish"_s));
        auto* publish = mounting.rider->Sheet()->findChild<QCheckBox*>();
        QCOMPARE(publish->accessibleDescription(),
                 u"The service does not tell whether it can publish folders."_s);
    }

    void providerFilesAreTaken() {
        const QTemporaryDir folder;
        QFile file(folder.filePath(u"own.brenviasp"_s));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            "<VirtualStorage DisplayName='Own' SPID='{own}'><SafeCardTemplate><F Name='A &amp; &lt;b>' "
            "FieldId='1'/><F/><F Hidden='true' Value='h'/></SafeCardTemplate></VirtualStorage>");
        file.close();
        Mounting mounting;
        mounting.prompts.ExpectPick(u"Open Provider File"_s, file.fileName());
        QVERIFY(
            mounting.Ride(u"step | Open Provider File... | step | Storage provider==Own | Virtual directory "
                          "name=V | Next | steps | A  <b>=x | Field 2=y | Next | steps"_s));
        mounting.prompts.ExpectQuestion(
            u"The field's name \"A & <b>\" holds \"&\", which the service may not "
            "understand. Do you really want to send it?"_s,
            false);
        QVERIFY(mounting.Ride(u"Finish | steps | on Finish"_s));
        QCOMPARE(mounting.Sent(), QStringList());
        QVERIFY(mounting.Ride(u"Back | Back"_s));
        mounting.prompts.ExpectMessage(
            u"The provider file \"%1\" cannot be used."_s.arg(folder.path() + u"/no.brenviasp"_s));
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(folder.path() + u"/no.brenviasp"_s)});
        QWidget* page = mounting.rider->Sheet()->CurrentPage();
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(page, &enter);
        QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(page, &drop);
        QVERIFY(mounting.Ride(u"step | Virtual directory name==V"_s));
    }
};

BTASK_TEST(MountWizardTest);
#include "MountWizardTest.moc"
