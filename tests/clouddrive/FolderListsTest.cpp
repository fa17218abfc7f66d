#include "clouddrive/FolderLists.h"
#include "clouddrive/SetKeyDlg.h"
#include "page/NoticeLine.h"
#include "page/PasswordField.h"
#include "support/PageFixture.h"
#include "support/TableHand.h"
#include "support/TestMain.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;
using devservice::Answer;

namespace {

constexpr char Key[] = "EncFolderKey";
const QString Replace = u"There is already an encryption password. Once you change the password, you will "
                        u"NOT be able to access files "
                        "encrypted using the old password. Do you really want to make the change?"_s;
const QString NotSet = u"Encryption requires a password which has not been set. Do you want to set it now?"_s;

/// A page over its list.
struct FolderFixture : PageFixture<> {
    explicit FolderFixture(bool encrypted = true)
        : setting(encrypted ? "EncFolderList" : "CompressFolderList"),
          page(encrypted ? static_cast<FolderListPage*>(new CEncFolderList(console))
                         : new CCompressedFolderList(console)) {
        page->resize(700, 400);
    }

    void Store(const char* value) { service->SetSetting(setting, value); }
    QString Stored() { return QString::fromStdString(service->Setting(setting).value_or("(none)")); }
    QStringList Shown() const { return TableHand(*page).Column(0); }

    /// The captions of the side actions that can be pressed.
    QStringList Actions() const {
        QStringList captions;
        for (const FrameAction& action : frame.sideActions)
            if (action.enabled)
                captions += action.caption;
        return captions;
    }
    void Press(const QString& caption) {
        for (const FrameAction& action : std::vector<FrameAction>(frame.sideActions))
            if (action.caption == caption && action.enabled)
                action.run();
        reader.StepAll();
    }
    void PressAdd() { Press(frame.sideActions.front().caption); }
    /// A click on the link cells of all these rows, the first of them last.
    void ClickLink(const QList<int>& rows) {
        const TableHand table(*page);
        table.Select(rows, 0);
        table.Click(rows.front(), 1);
        QCoreApplication::sendPostedEvents();
        reader.StepAll();
    }
    CSetKeyDlg* Dialog() const { return page->findChild<CSetKeyDlg*>(); }

    const char* setting;
    std::unique_ptr<FolderListPage> page;
};

/// The dialog, opened from the page.
struct KeyFixture : FolderFixture {
    KeyFixture() { Open(*page); }

    void OpenDialog() {
        Press(u"Set Password"_s);
        service->ForgetRequests();
    }
    QList<QLineEdit*> Fields() const { return Dialog()->findChildren<QLineEdit*>(); }
    QString Notice() const { return Dialog()->findChild<NoticeLine*>()->Text(); }
    void Type(const QString& password, const QString& again) {
        const QStringList texts{password, again};
        for (int i = 0; i < texts.size(); ++i) {
            Fields()[i]->selectAll();
            QTest::keyClick(Fields()[i], Qt::Key_Delete);
            QTest::keyClicks(Fields()[i], texts[i]);
        }
    }
    void Ok() {
        QTest::mouseClick(Dialog()->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok),
                          Qt::LeftButton);
        reader.StepAll();
    }
    QString StoredKey() { return QString::fromStdString(service->Setting(Key).value_or("(none)")); }
    QStringList Writes() const { return service.RequestLines().filter(QRegularExpression(u"^PUT "_s)); }
};

} // namespace

class FolderListsTest : public QObject {
    Q_OBJECT

private slots:
    void listsAddsAndRemoves_data() {
        const Columns<bool, QString, QString, QString> row("encrypted", "add", "words", "question");
        row("encrypted", true, u"Add New Encrypted Folder"_s, u"click to disable encryption for the folder"_s,
            u"Do you really want to disable file encryption for the folder?"_s);
        row("compressed", false, u"Add New Compressed Folder"_s,
            u"click to disable compression for the folder"_s,
            u"Do you really want to disable file compression for the folder?"_s);
    }

    void listsAddsAndRemoves() {
        const auto [encrypted, add, words, question] = Fetched<bool, QString, QString, QString>();
        FolderFixture fixture(encrypted);
        fixture.service->SetSetting(Key, "set");
        fixture.Store("/Home/A\n\n/Team\n/Home/A\n");
        fixture.Open(*fixture.page);
        QCOMPARE(fixture.Shown(), (QStringList{u"/Home/A"_s, u"/Team"_s, u"/Home/A"_s}));
        QCOMPARE(TableHand(*fixture.page).Cells(1)[1], u"#ICON:208@@"_s + words);
        QCOMPARE(fixture.Actions().first(), add);
        QCOMPARE(fixture.Actions().contains(u"Set Password"_s), encrypted);

        // What another console has added meanwhile stays, and a folder may come twice.
        fixture.Store("/Home/A\n/Team\n/Home/A\n/Other");
        fixture.prompts.ExpectRemotePick(u"Select folder"_s, u"/Team"_s);
        fixture.Press(add);
        QCOMPARE(fixture.Stored(), u"/Home/A\n/Team\n/Home/A\n/Other\n/Team"_s);
        QCOMPARE(fixture.Shown().size(), 5);

        // Of two rows of one path the clicked one goes.
        fixture.prompts.ExpectQuestion(question + u"\n/Home/A"_s, false);
        fixture.ClickLink({2});
        fixture.prompts.ExpectQuestion(question + u"\n/Home/A"_s, true);
        fixture.ClickLink({2});
        QCOMPARE(fixture.Stored(), u"/Home/A\n/Team\n/Other\n/Team"_s);
        fixture.prompts.ExpectQuestion(question + u"\n/Home/A\n/Team\n/Other\n/Team"_s, true);
        fixture.ClickLink({0, 1, 2, 3});
        QCOMPARE(fixture.Stored(), QString());
        QCOMPARE(fixture.Shown(), QStringList());
        QVERIFY(fixture.prompts.IsPlayed());
    }

    void nothingIsWrittenUponWhatIsNotKnown_data() {
        // What a read answers, and whether that is a list.
        const Columns<QString, bool> row("fault", "known");
        row("missing", "status:404", true);
        row("error", "status:500", false);
        row("cut", "fin", false);
        row("nothing", "refuse", false);
    }

    void nothingIsWrittenUponWhatIsNotKnown() {
        const auto [fault, known] = Fetched<QString, bool>();
        FolderFixture fixture(false);
        fixture.Store("/Home/A\n/Home/B");
        fixture.Open(*fixture.page);
        fixture.service->SetFault((fault + (fault == "refuse"_L1 ? u""_s : u"@FolderList"_s)).toStdString());
        fixture.Refresh(*fixture.page);
        QCOMPARE(fixture.Shown().size(), known ? 0 : 2);
        QCOMPARE(fixture.frame.notice.isEmpty(), known);
        QCOMPARE(fixture.Actions().contains(u"Add New Compressed Folder"_s), known);
        if (known)
            return;
        fixture.ClickLink({0}); // asks nothing
        fixture.service->ClearFaults();
        QCOMPARE(fixture.Stored(), u"/Home/A\n/Home/B"_s);
        fixture.Refresh(*fixture.page);
        QVERIFY(fixture.frame.notice.isEmpty());
        QVERIFY(fixture.Actions().contains(u"Add New Compressed Folder"_s));
    }

    void aChangeThatFailsIsTold_data() {
        const Columns<QString, QString, QString> row("stored", "fault", "said");
        const QString failed = u"The folder \"/New\" was not added.\n"_s;
        row("not taken", "/Home/A", "deny:500@ValueType", failed + u"The service did not take the list."_s);
        row("taken and not kept", "/Home/A", "lost",
            failed + u"The service keeps another list than was written."_s);
        row("an old entry", "/R&D", {},
            failed + u"The list was not changed. Its entry \"/R&D\": It holds \"&\", which a request cannot "
                     "carry to the service as it stands."_s);
        row("not read", "/Home/A", "status:500@FolderList",
            failed + u"The list was not changed, because the service did not tell what it holds now."_s);
    }

    void aChangeThatFailsIsTold() {
        const auto [stored, fault, said] = Fetched<QString, QString, QString>();
        FolderFixture fixture;
        fixture.Store(stored.toUtf8().constData());
        fixture.Open(*fixture.page);
        fixture.prompts.Hold();
        fixture.prompts.ExpectRemotePick(u"Select folder"_s, u"/New"_s);
        fixture.PressAdd();
        QVERIFY(!fixture.Actions().contains(u"Add New Encrypted Folder"_s)); // one at a time
        if (fault == "lost"_L1)
            fixture.service->SetAnswer("/settings/EncFolderList?", Answer{200, {}});
        else if (!fault.isEmpty())
            fixture.service->SetFault(fault.toStdString());
        fixture.prompts.ExpectMessage(said);
        fixture.prompts.Release();
        fixture.reader.StepAll();
        QVERIFY(fixture.prompts.IsPlayed());
        QCOMPARE(fixture.Stored(), stored);
        QCOMPARE(fixture.Shown(), QStringList{stored});
    }

    void anAddedFolderAsksForAPassword_data() {
        // How the service answers for the password; what follows.
        const Columns<QString, bool, bool> row("key", "asks", "unknown");
        row("none", "404", true, false);
        row("empty", "", true, false);
        row("set", "secret", false, false);
        row("not allowed", "403", false, true);
        row("error", "500", false, true);
    }

    void anAddedFolderAsksForAPassword() {
        const auto [key, asks, unknown] = Fetched<QString, bool, bool>();
        FolderFixture fixture;
        if (const int status = key.toInt(); status != 0)
            fixture.service->SetAnswer("/settings/EncFolderKey", Answer{status, {}});
        else
            fixture.service->SetSetting(Key, key.toStdString());
        fixture.Open(*fixture.page);
        fixture.prompts.ExpectRemotePick(u"Select folder"_s, u"/Home"_s);
        if (asks)
            fixture.prompts.ExpectQuestion(NotSet, true);
        fixture.PressAdd();
        QVERIFY(fixture.prompts.IsPlayed());
        QCOMPARE(fixture.Shown(), QStringList{u"/Home"_s});
        QCOMPARE(fixture.Dialog() != nullptr, asks);
        QCOMPARE(fixture.frame.notice,
                 unknown ? u"The service does not tell whether an encryption password is set."_s : QString());
    }

    void passwordsAreCheckedInOrder() {
        KeyFixture fixture;
        fixture.OpenDialog();
        const auto refused = [&fixture](const QString& password, const QString& again) {
            fixture.Type(password, again);
            fixture.Ok();
            return fixture.Dialog() && fixture.Writes().isEmpty() ? fixture.Notice() : QString();
        };
        QCOMPARE(refused({}, u"other"_s), u"Password can not be empty"_s);
        QCOMPARE(refused(u"R&D"_s, u"other"_s), u"Password does not match"_s);
        const QString lost = refused(u"R&D-secret"_s, u"R&D-secret"_s);
        QVERIFY2(lost.contains(u"\"&\""_s) && !lost.contains(u"secret"_s), qPrintable(lost));
        QCOMPARE(fixture.Fields()[0]->text(), u"R&D-secret"_s);
        // The hint holds nobody up.
        fixture.Type(u"a"_s, u"a"_s);
        QVERIFY(fixture.Fields()[0]->accessibleDescription().startsWith("Weak"_L1));
        fixture.Ok();
        QTRY_VERIFY(!fixture.Dialog());
        QCOMPARE(fixture.StoredKey(), u"a"_s);
    }

    void anOldPasswordIsReplacedAfterAQuestion_data() {
        const Columns<bool> row("yes");
        row("yes", true);
        row("no", false);
    }

    void anOldPasswordIsReplacedAfterAQuestion() {
        QFETCH(const bool, yes);
        KeyFixture fixture;
        fixture.service->SetSetting(Key, "old");
        fixture.OpenDialog();
        fixture.Type(u"new one +"_s, u"new one +"_s);
        fixture.prompts.ExpectQuestion(Replace, yes);
        fixture.Ok();
        QVERIFY(fixture.prompts.IsPlayed());
        QVERIFY(fixture.prompts.asked.destroys);
        QCOMPARE(fixture.StoredKey(), yes ? u"new one +"_s : u"old"_s);
        if (!yes)
            QCOMPARE(fixture.Fields()[0]->text(), u"new one +"_s);
        else
            QTRY_VERIFY(!fixture.Dialog());
    }

    void aPasswordSetElsewhereMeanwhileStays() {
        KeyFixture fixture;
        fixture.OpenDialog();
        fixture.service->SetSetting(Key, "theirs");
        fixture.Type(u"mine"_s, u"mine"_s);
        fixture.Ok();
        QCOMPARE(fixture.Notice(), u"An encryption password has been set elsewhere meanwhile."_s);
        QCOMPARE(fixture.StoredKey(), u"theirs"_s);
        fixture.prompts.ExpectQuestion(Replace, true);
        fixture.Ok();
        QCOMPARE(fixture.StoredKey(), u"mine"_s);
    }

    void nothingIsSetWhileNothingIsKnown() {
        KeyFixture fixture;
        fixture.service->SetFault("status:403@EncFolderKey");
        fixture.OpenDialog();
        QVERIFY(!fixture.Fields()[0]->isEnabled());
        QVERIFY(!fixture.Notice().isEmpty());
        fixture.service->ClearFaults();
        QTRY_VERIFY(fixture.reader.StepAll() > 0 || fixture.Fields()[0]->isEnabled()); // asks again by itself
        QTRY_VERIFY(fixture.Fields()[0]->isEnabled());

        fixture.Type(u"mine"_s, u"mine"_s);
        fixture.service->SetFault("status:500@EncFolderKey");
        fixture.Ok();
        QCOMPARE(fixture.Notice(),
                 u"The service does not tell whether there is an encryption password already, so "
                 "none was set."_s);
        QCOMPARE(fixture.Writes(), QStringList());
        fixture.service->ClearFaults();
        fixture.service->SetAnswer("/settings/EncFolderKey?", Answer{200, {}}); // taken, and not stored
        fixture.Ok();
        QCOMPARE(fixture.Notice(), u"The password was not stored as typed."_s);
        QCOMPARE(fixture.Fields()[1]->text(), u"mine"_s);
    }
};

BTASK_TEST(FolderListsTest);
#include "FolderListsTest.moc"
