#include "clouddrive/BVDirMgrDlg.h"
#include "clouddrive/ProfileEncryptionDlg.h"
#include "clouddrive/Quota.h"
#include "clouddrive/RenameVDirDlg.h"
#include "clouddrive/VDirItem.h"
#include "clouddrive/VDirListPanel.h"
#include "list/BrenListCtrl.h"
#include "list/CellMarkup.h"
#include "page/ActionButton.h"
#include "page/LinkLabel.h"
#include "page/NoticeLine.h"
#include "page/NumberField.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"

#include <QApplication>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr char Provider[] = "{0F3C6B52-7A41-4E0B-9C55-21D8E3A7B901}";
const QString Help =
    u"View the list of virtual directories. Click the folder icon on the left to create a new "
    "virtual directory by mounting a storage account. "_s;
const QString Unanswered =
    u"Unable to get virtual directory list, please check the application is still running. "_s;
const QString AskToDismount =
    u"Do you really want to dismount the virtual directory?\n\"Photos\" will no longer "
    "be attached to this computer."_s;

/// A click on the card's action of this caption; the expanding button comes last and may have the same.
void ClickAction(CTaskItem& card, const QString& caption) {
    for (int action = 0; action < card.ActionCount(); ++action)
        if (card.ActionCaption(action) == caption)
            return QTest::mouseClick(card.childAt(card.ActionRect(action).center()), Qt::LeftButton);
    QTest::qFail(qPrintable(u"there is no action "_s + caption), __FILE__, __LINE__);
}

/// The dialog of this kind that stands open; null for none.
template <typename Dialog>
Dialog* OpenDialog() {
    for (QWidget* window : QApplication::topLevelWidgets())
        if (auto* dialog = qobject_cast<Dialog*>(window); dialog && dialog->isVisible())
            return dialog;
    return nullptr;
}

void PressOk(QWidget& dialog) {
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

QString NoticeOf(const QWidget& dialog) {
    return dialog.findChild<NoticeLine*>()->Text();
}

} // namespace

/// The list of virtual directories, its cards, and what is done to them.
class VDirListTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        Service()->SetVirtualDirectories({{"Photos", "{C}", 3, Provider}, {"Mail", "{D}", 1, Provider}});
        m_panel = std::make_unique<CVDirListPanel>(m_fixture->console, LoginPace{3, 2, {}});
        m_panel->resize(770, 500);
    }

    void cleanup() {
        m_panel.reset();
        m_fixture.reset();
    }

    void cardsFollowTheList() {
        Open();
        QCOMPARE(Shown(), u"Photos:3:Mounted Mail:1:Pending"_s);
        CExpandableItem* mail = m_panel->FindCard(u"mail"_s);
        Service()->SetVirtualDirectories(
            {{"Old", "{E}", 2, Provider}, {"Mail", "{D}", 3, Provider}, {"Odd", "{F}", 9, Provider}});
        Refresh();
        QCOMPARE(Shown(), u"Mail:3:Mounted Old:2:Failed Odd:1:Pending"_s);
        QCOMPARE(m_panel->FindCard(u"Mail"_s), mail);
        // The providers' names are asked for behind the first list, and once.
        QCOMPARE(Service().RequestLines(), QStringList({u"GET /profile/1?PMCMethod=GetVdirList"_s,
                                                        u"GET /profile/?pmcmethod=GetPopularStorageList"_s,
                                                        u"GET /profile/2?PMCMethod=GetVdirList"_s}));
        // Without a card nothing is listed; names are the same in any letters.
        Answer(
            "<Response><VDirs><V Name='X' Status='3'/><V SafeCardId='{A}'/><V Name='OLD' SafeCardId='{E}'/>"
            "</VDirs></Response>");
        Refresh();
        QCOMPARE(Shown(), u"OLD:1:Pending"_s);
        Answer("<Response/>");
        Refresh();
        QCOMPARE(Shown(), u"OLD:1:Pending"_s);
        Answer("<Response><VDirs/></Response>");
        Refresh();
        QCOMPARE(Shown(), QString());
        const QList<LinkLabel*> labels = m_panel->findChildren<LinkLabel*>();
        QVERIFY(std::any_of(labels.begin(), labels.end(), [](const LinkLabel* label) {
            return label->isVisible() && label->Spans() == QStringList(u"here"_s);
        }));
    }

    void providersAreShownByTheirNames() {
        Service()->SetVirtualDirectories({{"Photos", "{C}", 3, Provider}, {"Own", "{D}", 3, "{unlisted}"}});
        Service()->SetFault("garbage@GetPopularStorageList");
        Open();
        QCOMPARE(Card(u"Photos"_s).BodyText(), u"Storage account"_s); // not known yet
        Service()->ClearFaults();
        Refresh();
        QCOMPARE(Card(u"Photos"_s).BodyText(), u"Storage provider Fennmoor Storage"_s);
        QCOMPARE(Card(u"Own"_s).BodyText(), u"Storage provider {unlisted}"_s);
        m_panel->Directories().Config(Card(u"Photos"_s).Record());
        m_fixture->reader.StepAll();
        const std::unique_ptr<CBVDirMgrDlg> manager(OpenDialog<CBVDirMgrDlg>());
        const QList<QLabel*> facts = manager->findChildren<QLabel*>();
        QVERIFY(std::any_of(facts.begin(), facts.end(), [](const QLabel* fact) {
            return fact->text() == "Fennmoor Storage"_L1 && fact->toolTip().contains("{0F3C6B52"_L1);
        }));
    }

    void aNewCardCollapsesTheExpandedOne() {
        Service()->SetAnswer("/mysafe/", devservice::Answer{200, "<SafeCard/>"});
        Open();
        m_panel->ToggleCard(*m_panel->CardAt(0));
        Refresh();
        QVERIFY(m_panel->ExpandedCard());
        Service()->SetVirtualDirectories(
            {{"Photos", "{C}", 3, Provider}, {"Mail", "{D}", 1, Provider}, {"New", "{E}", 1, Provider}});
        Refresh();
        QVERIFY(!m_panel->ExpandedCard());
    }

    void theFourthFailureIsTold() {
        Open();
        for (int round = 0; round < 2; ++round) {
            Service()->SetFault(devservice::HttpFault::Refuse);
            for (int failure = 0; failure < 3; ++failure)
                Refresh();
            QCOMPARE(m_fixture->frame.StatusText(), Help);
            QCOMPARE(Shown(), u"Photos:3:Mounted Mail:1:Pending"_s);
            Answer("<Response/>"); // no failure, and no success that forgets the others
            Service()->ClearFaults();
            Refresh();
            Answer({});
            Service()->SetFault(devservice::HttpFault::Refuse);
            for (int failure = 0; failure < 3; ++failure) {
                Refresh();
                QCOMPARE(m_fixture->frame.StatusText(), Unanswered);
                QCOMPARE(Shown(), u"Photos:2:Not known Mail:2:Not known"_s);
            }
            Service()->ClearFaults();
            Refresh();
            QCOMPARE(m_fixture->frame.StatusText(), Help);
            QCOMPARE(Shown(), u"Photos:3:Mounted Mail:1:Pending"_s);
        }
    }

    void nothingOpensWithoutADrive() {
        Open();
        auto* open = Button(u"Open"_s);
        QVERIFY(!open->IsBusy());
        Service()->SetDriveLetter(0);
        Refresh();
        QVERIFY(open->IsBusy() && open->toolTip().contains("drive"_L1));
        QVERIFY(!open->accessibleDescription().isEmpty());
    }

    void loginsAreTold_data() {
        const Columns<QString, QString, QString, QString> row("login", "fault", "message", "status");
        row("in", "in", "none", "", "Mounted");
        row("refused", "refused:No such account", "none", "No such account", "No such account");
        row("no plug-in", "no-plugin", "none", "Specified plugin can not be located!",
            "Specified plugin can not be located!");
        row("never", "never", "none", "", "Pending");
        row("not taken", "never", "deny:500@ForceRelogin", "Operation Failed\n", "Pending");
        const QString silent = u"The service does not tell any more how the login of \"Mail\" goes on."_s;
        row("dying", "never", "deny:500@GetVDirStatus", silent, silent);
    }

    void loginsAreTold() {
        const auto [login, fault, message, status] = Fetched<QString, QString, QString, QString>();
        Open();
        QVERIFY(Service()->SetLogin(login.toStdString()));
        QVERIFY(Service()->SetFault(fault.toStdString()));
        if (!fault.endsWith("ForceRelogin"_L1))
            m_fixture->prompts.ExpectOperation(u"Logging In..."_s);
        if (!message.isEmpty())
            m_fixture->prompts.ExpectMessage(message);
        ClickAction(Card(u"Mail"_s), u"Login"_s);
        ClickAction(Card(u"Mail"_s), u"Login"_s); // is swallowed
        EndLogin();
        QVERIFY(m_fixture->prompts.IsPlayed());
        QCOMPARE(Card(u"Mail"_s).StatusText(), status);
        QVERIFY(!Button(u"Login"_s, u"Mail"_s)->IsBusy());
        QCOMPARE(Service().RequestLines().filter(u"ForceRelogin"_s).size(), 1);
    }

    void aLoginGoesOnInTheBackground() {
        Open();
        Service()->SetLogin("never");
        m_fixture->prompts.ExpectOperation(u"Logging In..."_s);
        ClickAction(Card(u"Mail"_s), u"Login"_s);
        m_fixture->reader.Step(Lane::Service);
        QVERIFY(m_fixture->prompts.operation);
        QCOMPARE(Card(u"Mail"_s).StatusText(), u"Logging in, 0 s"_s);
        m_fixture->prompts.operation->leave();
        QVERIFY(!m_fixture->prompts.operation);
        m_panel->Deactivate(); // the page is left too
        Service()->SetLogin("refused:No\nsuch account");
        EndLogin();
        QCOMPARE(Card(u"Mail"_s).StatusText(), u"No\nsuch account"_s); // and no box
    }

    void aLoginIsCancelled() {
        Open();
        Service()->SetLogin("never");
        m_fixture->prompts.ExpectOperation(u"Logging In..."_s);
        ClickAction(Card(u"Mail"_s), u"Login"_s);
        m_fixture->reader.Step(Lane::Service);
        m_fixture->prompts.operation->cancel();
        EndLogin();
        QVERIFY(!m_fixture->prompts.operation);
        QCOMPARE(Card(u"Mail"_s).StatusText(), u"Pending"_s);
    }

    void dismountingIsAskedAndTold_data() {
        const Columns<QString, bool, QString, QString> row("fault", "yes", "question", "left");
        const QString uses =
            AskToDismount + u" Synchronised with it: /me/Pictures. Encrypted in it: /Photos/raw."_s;
        row("no", "none", false, uses, "Photos Mail");
        row("yes", "none", true, uses, "Mail");
        row("not taken", "deny:500@RemoveNode", true, uses, "Photos Mail");
        const QString unread =
            AskToDismount + u" Not all sync, encrypted and compressed folders that use it could be read."_s;
        row("dying", "refuse", true, unread, "Photos Mail");
    }

    void dismountingIsAskedAndTold() {
        const auto [fault, yes, question, left] = Fetched<QString, bool, QString, QString>();
        Service()->SetSetting("DropFolders", "photos\t/me/Pictures");
        Service()->SetSetting("EncFolderList", "/Photos/raw\n/Mail");
        Open();
        QVERIFY(Service()->SetFault(fault.toStdString()));
        m_fixture->prompts.ExpectQuestion(question, yes);
        if (yes && fault != "none"_L1)
            m_fixture->prompts.ExpectMessage(u"Operation Failed\n"_s);
        ClickAction(Card(u"Photos"_s), u"Dismount"_s);
        ClickAction(Card(u"Photos"_s), u"Dismount"_s); // is swallowed
        m_fixture->reader.StepAll();
        QCOMPARE(Titles(), left);
        QVERIFY(m_fixture->prompts.asked.destroys);
    }

    void aNameThatBreaksTheDocumentIsAskedAbout() {
        Service()->SetVirtualDirectories({{"A&B", "{C}", 3, Provider}});
        Open();
        m_fixture->prompts.ExpectQuestion(
            QString(AskToDismount).replace("Photos"_L1, "A&B"_L1) +
                u"\nThe name holds \"&\", which the service may not understand. Do you really want to send it?"_s,
            false);
        ClickAction(Card(u"A&B"_s), u"Dismount"_s);
        m_fixture->reader.StepAll();
        m_fixture->prompts.ExpectMessage(
            u"\"A&B\" cannot be logged in. It holds \"&\", which a request cannot "
            "carry to the service as it stands."_s);
        ClickAction(Card(u"A&B"_s), u"Login"_s);
        QVERIFY(Service().RequestLines().filter(u"PMCMethod=R"_s).isEmpty());
    }

    void renamingChecksTheNameAndKeepsWhatWasTyped() {
        Service()->SetSetting("CompressFolderList", "/photos/raw");
        Open();
        ClickAction(Card(u"Photos"_s), u"Rename"_s);
        auto* dialog = OpenDialog<CRenameVDirDlg>();
        QVERIFY(dialog);
        m_fixture->reader.StepAll();
        bool told = false;
        for (const QLabel* label : dialog->findChildren<QLabel*>())
            told =
                told || (label->isVisible() && label->text().contains("Compressed in it: /photos/raw."_L1));
        QVERIFY(told);
        const auto refused = [&](const QString& name) {
            dialog->findChild<QLineEdit*>()->setText(name);
            PressOk(*dialog);
            m_fixture->reader.StepAll();
            return NoticeOf(*dialog);
        };
        QCOMPARE(refused({}), u"Virtual Directory Name Can Not Be Empty!"_s);
        QCOMPARE(refused(u"MAIL"_s), u"There is a Virtual Directory with the same name!"_s);
        QVERIFY(refused(u"a/b"_s).startsWith("Virtual Directory name can only"_L1));
        Service()->SetFault("deny:500@/resources/");
        QCOMPARE(refused(u"Pictures"_s), u"Operation failed"_s);
        Service()->SetFault(devservice::HttpFault::Refuse);
        QCOMPARE(refused(u"Pictures"_s),
                 u"Unable to get virtual directory list, please check the application is still running"_s);
        QCOMPARE(dialog->Name(), u"Pictures"_s);
        Service()->ClearFaults();
        CExpandableItem* card = &Card(u"Photos"_s);
        PressOk(*dialog);
        m_fixture->reader.StepAll();
        QVERIFY(!OpenDialog<CRenameVDirDlg>());
        QCOMPARE(Titles(), u"Pictures Mail"_s);
        QCOMPARE(m_panel->CardAt(0), card);
    }

    void anExpandedCardShowsItsAccount() {
        Service()->SetAnswer(
            "/mysafe/", devservice::Answer{200, "<SafeCard><F FieldId='{F}' FieldName='User' "
                                                "FieldData='bWU='/><F FieldId='{G}' FieldName="
                                                "'Key' Encrypted='TRUE'/><F FieldId='{H}' FieldName='Own' "
                                                "FieldData='I0lDT046M0BAbWU='/></SafeCard>"});
        Open();
        m_panel->ToggleCard(*m_panel->CardAt(0));
        m_fixture->reader.StepAll();
        auto* list = m_panel->CardAt(0)->findChild<CBrenListCtrl*>();
        auto* chunks = m_panel->CardAt(0)->findChild<LinkLabel*>();
        QCOMPARE(list->Rows().CellText(0, 0) + u' ' + list->Rows().CellText(0, 1), u"User me"_s);
        QCOMPARE(WordsOfCell(list->Rows().CellText(2, 1)), u"#ICON:3@@me"_s);
        QCOMPARE(list->Rows().CellText(1, 1), u"******"_s);
        QCOMPARE(chunks->Text(), u"Chunking is disabled, Click <a>here</a> to enable."_s);
        QCOMPARE(m_fixture->frame.Captions(),
                 QStringList({u"Config"_s, u"Dismount"_s, u"Rename"_s, u"Login"_s}));

        emit chunks->LinkClicked(0);
        auto* manager = OpenDialog<CBVDirMgrDlg>();
        QVERIFY(manager);
        m_fixture->reader.StepAll();
        manager->findChild<QCheckBox*>()->setChecked(true);
        manager->findChild<NumberField*>()->SetValue(0);
        Service()->ForgetRequests();
        PressOk(*manager);
        m_fixture->reader.StepAll();
        QCOMPARE(Service().RequestLines().mid(0, 2),
                 QStringList({u"PUT /settings/Chunk%20Photos?ValueType=4&Value=true"_s,
                              u"PUT /settings/Chunk%20Size%20Photos?ValueType=1&Value=20"_s}));
        QCOMPARE(chunks->Text(),
                 u"Chunking is enabled, Chunk Size is 20(MB), click <a>here</a> to configure."_s);

        Service()->SetFault("deny:404@/mysafe/");
        m_fixture->prompts.ExpectMessage(
            u"Unable to get configuration info. Please check the application is still running"_s);
        Refresh();
        QCOMPARE(list->Rows().rowCount(), 0);
    }

    void theQuotaIsShown_data() {
        const Columns<QByteArray, QString, QString> row("answer", "fault", "shown");
        row("told", "<used-bytes>3221225472</x><allocated-bytes>2147483648</x>", "none",
            " 2.000 GB| 3.000 GB|-1.000 GB|");
        row("half", "<used-bytes>1</x>", "none", "|||The service does not tell the account's quota.");
        row("small", "<used-bytes>1</x><allocated-bytes>1048576</x>", "none",
            "|||The account has no quota of more than 1 MB.");
        row("refused", "", "deny:500", "|||The service does not tell the account's quota.");
        row("down", "", "refuse", "|||The service does not answer, so the quota is not known.");
    }

    void theQuotaIsShown() {
        const auto [answer, fault, shown] = Fetched<QByteArray, QString, QString>();
        Service()->SetAnswer("/resources/home/quota", devservice::Answer{207, answer.toStdString()});
        QVERIFY(Service()->SetFault(fault.toStdString()));
        CQuota::Open(m_fixture->console, nullptr);
        m_fixture->reader.StepAll();
        const std::unique_ptr<CQuota> quota(OpenDialog<CQuota>());
        QStringList texts;
        for (const QLabel* label : quota->findChildren<QLabel*>(Qt::FindDirectChildrenOnly))
            if (!label->text().endsWith(u':'))
                texts += label->text();
        QCOMPARE(texts.join(u'|') + u'|' + NoticeOf(*quota), shown);
    }

    void theProfileIsEncryptedWhereThatIsOffered_data() {
        const Columns<QString, bool> row("offer", "offered");
        row("1", true);
        row("0", false);
        row("", false);
    }

    void theProfileIsEncryptedWhereThatIsOffered() {
        const auto [offer, offered] = Fetched<QString, bool>();
        Service()->SetSetting("ConsoleRecords", offer.toStdString());
        m_panel->EditProfileEncryption();
        auto* dialog = OpenDialog<ProfileEncryptionDlg>();
        QVERIFY(dialog);
        m_fixture->reader.StepAll();
        auto* box = dialog->findChild<QCheckBox*>();
        QCOMPARE(box->isEnabled(), offered);
        box->click();
        if (offered)
            m_fixture->prompts.ExpectMessage(
                u"Settings will take effect when the application starts next time."_s);
        PressOk(*dialog);
        m_fixture->reader.StepAll();
        QVERIFY(!OpenDialog<ProfileEncryptionDlg>());
        QCOMPARE(Service()->Setting("ProfileEncryption").value_or("none"), offered ? "True" : "none");
    }

private:
    ServiceFixture& Service() { return m_fixture->service; }
    void Open() {
        m_fixture->Open(*m_panel);
        m_panel->show();
    }
    void Refresh() { m_fixture->Refresh(*m_panel); }

    void Answer(const std::string& list) {
        Service()->SetAnswer("/profile/",
                             list.empty() ? std::nullopt : std::optional(devservice::Answer{200, list}));
    }

    CVDirItem& Card(const QString& name) { return static_cast<CVDirItem&>(*m_panel->FindCard(name)); }

    ActionButton* Button(const QString& caption, const QString& card = u"Photos"_s) {
        CVDirItem& item = Card(card);
        for (int action = 0; action < item.ActionCount(); ++action)
            if (item.ActionCaption(action) == caption)
                return qobject_cast<ActionButton*>(item.childAt(item.ActionRect(action).center()));
        return nullptr;
    }

    /// Polls until nobody waits for a login any more.
    void EndLogin() {
        m_fixture->reader.StepAll();
        QTRY_VERIFY((m_fixture->reader.StepAll(), !m_panel->Directories().IsLoggingIn(u"Mail"_s)));
        m_fixture->reader.StepAll();
    }

    QString Titles() const {
        QStringList titles;
        for (int card = 0; card < m_panel->CardCount(); ++card)
            titles += m_panel->CardAt(card)->Title();
        return titles.join(u' ');
    }

    QString Shown() const {
        QStringList cards;
        for (int card = 0; card < m_panel->CardCount(); ++card)
            cards += u"%1:%2:%3"_s.arg(m_panel->CardAt(card)->Title())
                         .arg(m_panel->CardAt(card)->StatusState())
                         .arg(m_panel->CardAt(card)->StatusText());
        return cards.join(u' ');
    }

    std::unique_ptr<PageFixture<>> m_fixture;
    std::unique_ptr<CVDirListPanel> m_panel;
};

BTASK_TEST(VDirListTest);
#include "VDirListTest.moc"
