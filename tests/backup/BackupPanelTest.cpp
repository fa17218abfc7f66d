#include "backup/BackupPanel.h"
#include "backup/BackupItem.h"
#include "backup/BackupTaskList.h"
#include "page/TabPanel.h"
#include "platform/Registry.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"
#include "taskman/TaskSummary.h"

#include <QCheckBox>
#include <QTextBrowser>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeTask;

namespace {

constexpr char UserKey[] = "SOFTWARE\\Brenvia\\Settings";
constexpr char AdvancedMode[] = "BackupTaskAdvancedMode";

} // namespace

class BackupPanelTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_fixture->service->PutTasks({MakeTask("{1}", "Photos", "ccbackup"),
                                      MakeTask("{2}", "Mail", "ADVBackup"),
                                      MakeTask("{3}", "Old", "ccbackup", TaskState::Completed),
                                      MakeTask("{4}", "Rota", "advbackup", TaskState::Running)});
    }
    void cleanup() { m_fixture.reset(); }

    void listsTheBackupsOfItsFlavour() {
        QCOMPARE(Shown(*MakeList(BackupFlavour::Mirrored)), u"Photos: Cross Cloud"_s);
        QCOMPARE(Shown(*MakeList(BackupFlavour::Snapshot)),
                 u"Mail: Application Data|Rota: Application Data"_s);
    }

    void saysWhatThisKindIsWhereThereIsNone() {
        for (const char* id : {"{1}", "{2}", "{3}", "{4}"})
            m_fixture->service->RemoveTask(id);
        for (const BackupFlavour flavour : {BackupFlavour::Mirrored, BackupFlavour::Snapshot}) {
            const auto list = MakeList(flavour);
            const auto* page = list->findChild<QTextBrowser*>();
            QVERIFY(page && page->isVisibleTo(list.get()));
            QVERIFY(page->toPlainText().contains(
                flavour == BackupFlavour::Mirrored ? u"no mirrored backups"_s : u"no snapshot backups"_s));
        }
    }

    void keepsTheAdvancedModeForTheUser() {
        const platform::RegistryKey key{platform::RegistryRoot::CurrentUser, UserKey};
        const QString plain = u"Summary|History"_s;
        const QString all = plain + u"|Running|Pending|Pending Retry|Trace"_s;
        for (const bool on : {false, true}) {
            const auto list = MakeList(BackupFlavour::Mirrored);
            CTabPanel* tabs = Expand(*list);
            auto* box = tabs->findChild<QCheckBox*>();
            QCOMPARE(box->isChecked(), on);
            QCOMPARE(Tabs(*tabs), on ? all : plain);
            box->click();
            QCOMPARE(Tabs(*tabs), on ? plain : all);
            QCOMPARE(platform::ReadRegistryDword(key, AdvancedMode), std::optional<uint32_t>(on ? 0 : 1));
        }
    }

    void aBackupServerShowsMirroredBackupsAlone() {
        const platform::RegistryKey key{platform::RegistryRoot::LocalMachine, "SOFTWARE\\Brenvia"};
        QCOMPARE(CBackupPanel(m_fixture->console).PageCount(), 4);
        if (!platform::WriteRegistryDword(key, "BrQBSMode", 0))
            QSKIP("the machine's values cannot be written by this user");
        const int pages = CBackupPanel(m_fixture->console).PageCount();
        platform::WriteRegistryDword(key, "BrQBSMode", 1);
        QCOMPARE(pages, 2);
    }

    void cancelsABackupFromItsSummary() {
        const auto list = MakeList(BackupFlavour::Snapshot);
        Expand(*list, u"Rota"_s);
        m_fixture->reader.StepAll();
        m_fixture->prompts.ExpectQuestion(
            u"Do you really want to cancel the task?\n\"Rota\" will be deleted for good. Its files stay."_s,
            true);
        m_fixture->Click(u"Cancel Backup"_s);
        QVERIFY(!m_fixture->service->FindTask("{4}"));
        QVERIFY(!list->FindCard(u"Rota"_s));
    }

private:
    std::unique_ptr<CBackupTaskList> MakeList(BackupFlavour flavour) {
        auto list = std::make_unique<CBackupTaskList>(m_fixture->console, flavour);
        list->resize(760, 560);
        m_fixture->Open(*list);
        return list;
    }

    static QString Shown(const CBackupTaskList& list) {
        QStringList cards;
        for (int card = 0; card < list.CardCount(); ++card)
            cards.append(list.CardAt(card)->Title() + u": "_s + list.CardAt(card)->BodyText());
        cards.sort();
        return cards.join(u'|');
    }

    static CTabPanel* Expand(CBackupTaskList& list, const QString& title = u"Photos"_s) {
        CExpandableItem* card = list.FindCard(title);
        emit card->Toggled();
        return card->findChild<CTabPanel*>();
    }

    static QString Tabs(const CTabPanel& tabs) {
        const char* const titles[] = {"Summary", "History", "Running", "Pending", "Pending Retry", "Trace"};
        QStringList shown;
        for (int page = 0; page < tabs.PageCount(); ++page)
            if (tabs.IsTabShown(page))
                shown.append(QString::fromLatin1(titles[page]));
        return shown.join(u'|');
    }

    std::unique_ptr<PageFixture<>> m_fixture;
};

BTASK_TEST(BackupPanelTest);
#include "BackupPanelTest.moc"
