// Labels: threads painting
#include "SyncFolderPage.h"
#include "grid/BrenPropertyGrid.h"
#include "page/ActionButton.h"
#include "page/NoticeLine.h"
#include "page/TabPanel.h"
#include "support/TableHand.h"
#include "support/TestMain.h"
#include "syncfolders/AddDropFolderDlg.h"
#include "syncfolders/DropFolderSettings.h"
#include "syncfolders/SyncCommands.h"
#include "wizard/PathField.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

void PressOk(QWidget& dialog) {
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Ok), Qt::LeftButton);
}

} // namespace

/// The sync folders as cards, and what is done to them.
class DropFolderListTest : public QObject, private SyncFolderPage {
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void cardsSayHowTheirTasksStand_data() {
        const Columns<int, int, int, QString, QString, QString> row("state", "nextRun", "failed", "status",
                                                                    "failure", "action");
        row("counts down", 0, 61, 0, "Sync starts in 01 Minute(s) 01 Second(s)", "", "Pause Sync");
        row("is due", 0, -1, 0, "Sync starts momentarily", "", "Pause Sync");
        row("paused", 2, 61, 0, "Paused", "", "Resume Sync");
        row("failed", 3, 3600, 3, "failed, retry in 01:00:00",
            u"3 files failed  \u00B7  failed, retry in 01:00:00"_s, "Retry Now");
        row("completed", 5, 0, 0, "Completed", "", "Start Now");
        row("completed but for one", 5, 0, 1, "Completed", u"1 file failed  \u00B7  Completed"_s,
            "Start Now");
    }

    void cardsSayHowTheirTasksStand() {
        const auto [state, nextRun, failed, status, failure, action] =
            Fetched<int, int, int, QString, QString, QString>();
        Open();
        Put(static_cast<TaskState>(state), nextRun, failed);
        m_fixture->Refresh(*m_panel);
        QCOMPARE(m_panel->CardCount(), 1);
        QCOMPARE(Card().Title(), u"Cloud Sync Folder - Team"_s);
        QCOMPARE(Card().StatusText(), status);
        QCOMPARE(Card().Failure(), failure);
        QVERIFY(Buttons().contains(action));
        QCOMPARE(Buttons().filter(u"failed"_s).size(), failed > 0 ? 1 : 0);
        QCOMPARE(Buttons().size(), failed > 0 ? 6 : 5);
        // Nothing that is left undone looks well.
        QCOMPARE(Card().StatusState() == static_cast<int>(TaskState::Completed), state == 5 && failed == 0);
        QCOMPARE(Card().BodyText().contains(u"paused since"_s), state == 2);
    }

    void tasksAreAskedForOnceAndAFewAtATime() {
        QStringList records;
        for (int i = 0; i < 40; ++i)
            records += u"Folder %1\t/local/%1"_s.arg(i);
        Service().SetSetting("DropFolders", records.join(u'\n').toStdString());
        Open();
        QList<int> asked;
        for (int read = 0; read < 5; ++read) {
            asked += int(m_fixture->service.RequestLines().size());
            Service().ForgetRequests();
            m_fixture->Refresh(*m_panel);
        }
        QCOMPARE(asked, (QList<int>{16, 16, 11, 1, 1}));
        Service().RemoveTask(IdOf("Folder 3"));
        m_fixture->Refresh(*m_panel); // finds the row gone
        Service().ForgetRequests();
        m_fixture->Refresh(*m_panel);
        QCOMPARE(m_fixture->service.RequestLines(),
                 QStringList({u"GET /settings/DropFolders"_s, u"GET /schedule/getsynctask"_s}));
        QVERIFY(!IdOf("Folder 3").empty());
    }

    void anUnreadListKeepsItsCards() {
        Open();
        for (const char* fault : {"refuse", "status:500@DropFolders", "fin@DropFolders"}) {
            QVERIFY(Service().SetFault(fault));
            m_fixture->Refresh(*m_panel);
            QCOMPARE(m_panel->CardCount(), 1);
            Service().ClearFaults();
        }
        Service().SetSetting("DropFolders", "");
        m_fixture->Refresh(*m_panel);
        QCOMPARE(m_panel->CardCount(), 0);
    }

    void buttonsCommandTheTask() {
        Open();
        Put(TaskState::Pending, 600, 0);
        m_fixture->Refresh(*m_panel);
        Click(u"Pause Sync"_s);
        QCOMPARE(Service().FindTask(IdOf("Team"))->state, TaskState::Paused);
        QVERIFY(Buttons().contains(u"Resume Sync"_s)); // by what was read, with the state
        QVERIFY(Card().BodyText().contains(u"paused since 2"_s));
        Service().SetSetting("DropPollingInterval", "30");
        m_fixture->Refresh(*m_panel);
        QCOMPARE(Service().FindTask(IdOf("Team"))->state, TaskState::Paused);
        Click(u"Resume Sync"_s);
        QCOMPARE(Service().FindTask(IdOf("Team"))->state, TaskState::Running);
        QVERIFY(!Card().BodyText().contains(u"paused"_s));
    }

    void failedFilesOpenUntilTheySucceed() {
        Open();
        Put(TaskState::Failed, 600, 2);
        m_fixture->Refresh(*m_panel);
        Click(u"2 files failed"_s);
        QVERIFY(Card().IsExpanded());
        auto* tabs = Card().findChild<CTabPanel*>();
        QCOMPARE(tabs->CurrentPage()->accessibleName(), u"Pending Retry Action"_s);
        const TableHand table(*tabs->CurrentPage());
        QCOMPARE(table.Column(4), QStringList({u"in use"_s, u"in use"_s}));
        Put(TaskState::Pending, 600, 0);
        m_fixture->Refresh(*m_panel);
        QCOMPARE(tabs->CurrentIndex(), 0);
        QCOMPARE(Card().Failure(), QString());
    }

    void advancedModeIsKeptByTheService() {
        Open();
        Expand();
        auto* tabs = Card().findChild<CTabPanel*>();
        const auto shown = [tabs] {
            int count = 0;
            for (int page = 0; page < tabs->PageCount(); ++page)
                count += tabs->IsTabShown(page) ? 1 : 0;
            return count;
        };
        QCOMPARE(shown(), 3);
        Card().findChild<QCheckBox*>()->click();
        m_fixture->reader.StepAll();
        QCOMPARE(shown(), 7);
        QCOMPARE(Service().Setting("DFAdvancedMode"), std::optional<std::string>("1"));
    }

    void disablingAsksWithItsFacts() {
        Open();
        const QString question =
            u"Do you really want to disable the Cloud Sync Folder (the content of the local "
            "folder will not be removed. However, synchronization will stop.)?\nLocal files "
            "stay in "_s +
            Local() + u"\nCloud files stay in /Team\nChanges no longer travel between the two"_s;
        m_fixture->prompts.ExpectQuestion(question, false);
        Click(u"Disable"_s);
        QCOMPARE(m_panel->CardCount(), 1);
        QVERIFY(m_fixture->prompts.asked.destroys);
        m_fixture->prompts.ExpectQuestion(question, true);
        Click(u"Disable"_s);
        QCOMPARE(m_panel->CardCount(), 0);
        QCOMPARE(Service().Setting("DropFolders"), std::optional<std::string>("no tab"));
        QCOMPARE(IdOf("Team"), std::string());
    }

    void addingNeedsADirectoryThatIsLeft_data() {
        const Columns<QString, QByteArray, QString> row("fault", "list", "message");
        row("refuse", "",
            "Unable to get virtual directory list, please check the application is still running");
        row("", "team\t/a\nArchive\t/b",
            "Cloud Sync Folder has been enabled for all existing cloud storage account(Virtual Directory)");
        row("status:500@DropFolders", "",
            "The service does not tell which Cloud Sync Folders there are, so none can be added now.");
        row("none", "",
            "You don't have any cloud storage account(Virtual Directory) yet, please mount one in 'Cloud "
            "Drive' "
            "section first.");
    }

    void addingNeedsADirectoryThatIsLeft() {
        const auto [fault, list, message] = Fetched<QString, QByteArray, QString>();
        Service().SetSetting("DropFolders", list.toStdString());
        Open();
        if (fault == "none"_L1)
            Service().SetVirtualDirectories({});
        else if (!fault.isEmpty())
            QVERIFY(Service().SetFault(fault.toStdString()));
        m_fixture->prompts.ExpectMessage(message);
        m_panel->Folders().Add();
        m_fixture->reader.StepAll();
        QVERIFY(!Dialog());
        QVERIFY(m_fixture->prompts.IsPlayed());
    }

    void addingChecksInOrder() {
        CAddDropFolderDlg& dialog = OpenAdd();
        auto* names = dialog.findChild<QComboBox*>();
        auto* path = dialog.findChild<PathField*>();
        const auto notice = [&dialog] { return dialog.findChild<NoticeLine*>()->Text(); };
        QCOMPARE(names->count(), 1);
        PressOk(dialog);
        QCOMPARE(notice(), u"Cloud Sync Folder location can not be empty."_s);
        path->SetPath(Local() + u"/inside"_s);
        QVERIFY(notice().contains(u"inside"_s));
        PressOk(dialog);
        QCOMPARE(notice(), u"Please select the cloud storage for the Cloud Sync Folder."_s);
        names->setCurrentIndex(0);
        QCOMPARE(path->Path(), Local() + u"/inside"_s); // what was chosen stays
        path->SetPath({});
        names->setCurrentIndex(-1);
        names->setCurrentIndex(0);
        QVERIFY(path->Path().endsWith("Cloud Sync Folder - Archive"_L1));
        path->SetPath(u"Archive"_s);
        PressOk(dialog);
        QVERIFY(notice().contains(u"no complete path"_s));
        // Another console adds meanwhile: nobody's record is lost.
        const std::string other = *Service().Setting("DropFolders") + "\nOther\t/other";
        Service().SetSetting("DropFolders", other);
        const QString place = m_fixture->service.Home() + "/a/b"_L1;
        path->SetPath(place);
        PressOk(dialog);
        m_fixture->reader.StepAll();
        QTRY_VERIFY(!Dialog());
        m_fixture->reader.StepAll();
        QVERIFY(QDir(place).exists());
        QVERIFY(QString::fromStdString(*Service().Setting("DropFolders"))
                    .endsWith(u"\nOther\t/other\nArchive\t"_s + place));
        QVERIFY(m_panel->FindCard(u"Cloud Sync Folder - Archive"_s));
    }

    void whatDoesNotStandIsTold() {
        CAddDropFolderDlg& dialog = OpenAdd();
        dialog.findChild<QComboBox*>()->setCurrentIndex(0);
        QVERIFY(Service().SetFault("deny:500@LTN_Archive_"));
        const QString place = m_fixture->service.Home() + "/a"_L1;
        dialog.findChild<PathField*>()->SetPath(place);
        m_fixture->prompts.ExpectMessage(
            u"The folder \""_s + place +
            u"\" is in the list of sync folders.\nThe service did not take these "
            "settings of the folder: LTN_Archive_."_s);
        PressOk(dialog);
        m_fixture->reader.StepAll();
        QVERIFY(m_fixture->prompts.IsPlayed());
    }

    void settingsHaveTheirDefaults() {
        CDropFolderSettings page(m_fixture->console);
        page.resize(800, 600);
        m_fixture->Open(page);
        QStringList rows;
        for (const CPropertyGroup* group : page.findChild<CBrenPropertyGrid*>()->Groups())
            for (int row = 1; row < group->RowCount(); ++row)
                rows += group->GetRow(row)->key + u'=' + group->GetRow(row)->value;
        QVERIFY(rows[1].startsWith("ComputerName="_L1) && rows[1].size() > 13);
        rows.removeAt(1);
        QCOMPARE(rows, QStringList({u"WriterName=Local User"_s, u"DropPollingInterval=15"_s,
                                    u"DropCTMax=10240"_s, u"DropCTMin=10"_s}));
    }

private:
    /// The captions that can be reached on the card.
    QStringList Buttons() {
        QStringList captions;
        for (const auto* button : Card().findChildren<ActionButton*>())
            if (button->isVisible())
                captions += button->accessibleName().isEmpty() ? button->text() : button->accessibleName();
        return captions;
    }
    void Click(const QString& caption) {
        for (auto* button : Card().findChildren<ActionButton*>())
            if (button->isVisible() && (button->accessibleName() == caption || button->text() == caption)) {
                QTest::mouseClick(button, Qt::LeftButton);
                return Settle();
            }
        QTest::qFail(qPrintable(u"there is no button "_s + caption), __FILE__, __LINE__);
    }

    CAddDropFolderDlg* Dialog() {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (auto* dialog = qobject_cast<CAddDropFolderDlg*>(window); dialog && dialog->isVisible())
                return dialog;
        return nullptr;
    }
    CAddDropFolderDlg& OpenAdd() {
        Open();
        m_panel->Folders().Add();
        m_fixture->reader.StepAll();
        return *Dialog();
    }
};

BTASK_TEST(DropFolderListTest);
#include "DropFolderListTest.moc"
