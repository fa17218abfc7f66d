#include "backup/BackupPanel.h"
#include "backup/BackupSettingsPage.h"
#include "backup/BackupSettingsPanel.h"
#include "backup/BackupTaskList.h"
#include "backup/SchedulerPage.h"
#include "cards/ExpandableItem.h"
#include "grid/BrenPropertyGrid.h"
#include "page/NoticeLine.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"

#include <QComboBox>
#include <QLineEdit>

using namespace Qt::Literals::StringLiterals;
using namespace devservice;

/// The settings of an existing backup: shown, changed and saved through the service.
class BackupSettingsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_fixture = std::make_unique<PageFixture<>>();
        m_fixture->service->SetVirtualDirectories({{"V", "{C}"}});
        Put("{1}", "Letters", "Snapshotbackup", "C:\\Docs\nD:\\Work\t/V/Office\t*");
        Put("{2}", "Photos", "backup", "D:\\Photos\t/V/Photos\tD:\\Photos\\Raw");
        Put("{3}", "Cloud", "ccbackup", "/A\t/V/B\t*");
    }
    void cleanup() { m_fixture.reset(); }

    void showsWhatIsKnownAndWhatIsNot_data() {
        const Columns<QString, QString> row("task", "rows");
        const QString open = u"Included Extensions: Extensions=?; "_s;
        row("{1}",
            "Schedule: Schedule=?, Next Run=2025-03-04 21:00:00; Source Folders: Folder=C:\\Docs, "
            "Folder=D:\\Work, Add a Folder...=; Excluded Folders and/or Files: Add a Folder...=; "
            "Target Folders: Folder=/V/Office; Included Extensions: Extensions=?; Excluded Extensions: "
            "Extensions=?; Excluded Files: Files=?; Task Process Policies: Skip system files=?, Skip hidden "
            "files=?; Misc: Retention Policy=?, Frequency of Full Backup=?; Configuration: Name=Letters, "
            "Backup "
            "Type=Folder, Encrypted=No");
        row("{2}",
            "Schedule: Schedule=?, Next Run=2025-03-04 21:00:00; Source Folders: Folder=D:\\Photos, Add a "
            "Folder...=; Excluded Folders and/or Files: Excluded=D:\\Photos\\Raw, Add a Folder...=; Target "
            "Folders: Folder=/V/Photos; Included Extensions: Extensions=?; Excluded Extensions: "
            "Extensions=?; "
            "Excluded Files: Files=?; Task Process Policies: Skip system files=?, Skip hidden files=?; "
            "Configuration: Name=Photos, Backup Type=Mirrored, Encrypted=No");
        row("{3}", "Schedule: Schedule=?, Next Run=2025-03-04 21:00:00; Configuration: Name=Cloud, Backup "
                   "Type=Cross "
                   "Cloud, Encrypted=No");
    }

    void showsWhatIsKnownAndWhatIsNot() {
        const auto [task, rows] = Fetched<QString, QString>();
        BackupSettingsPage page(m_fixture->console);
        page.Turn(RowOf(task));
        m_fixture->Open(page);
        QCOMPARE(Shown(page), rows);
    }

    void savesWhatWasChangedAndNothingElse() {
        BackupSettingsPage page(m_fixture->console);
        page.Turn(RowOf(u"{1}"_s));
        m_fixture->Open(page);
        QCOMPARE(m_fixture->frame.Captions(), QStringList(u"Refresh..."_s));
        m_fixture->prompts.ExpectPick(u"Source Folders"_s, u"E:\\More"_s);
        Open(page, u"Source Folders"_s, 3);
        m_fixture->prompts.ExpectText(
            u"Please enter the count of incremental snapshots you want to keep (0-all):"_s, u"5"_s);
        Open(page, u"Misc"_s, 1);
        m_fixture->prompts.ExpectRemotePick(u"Target Folder"_s, u"/V/Other"_s);
        Open(page, u"Target Folders"_s, 1);
        Type(page, u"Excluded Files"_s, 1, u"thumbs.db"_s);
        QVERIFY2(
            Shown(page).contains(u"Folder=E:\\More!"_s) && Shown(page).contains(u"Retention Policy=5!"_s) &&
                Shown(page).contains(u"Folder=/V/Other!"_s) && Shown(page).contains(u"Files=thumbs.db!"_s),
            qPrintable(Shown(page)));

        // What fails keeps all of it.
        m_fixture->service->SetFault(HttpFault::Refuse);
        m_fixture->prompts.ExpectMessage(
            u"The settings were not saved (Letters): the service does not answer"_s);
        m_fixture->Click(u"Save"_s);
        QVERIFY(Shown(page).contains(u"Retention Policy=5!"_s));
        m_fixture->service->ClearFaults();
        m_fixture->service->ForgetRequests();
        m_fixture->Click(u"Save"_s);
        const std::vector<ReceivedRequest> requests = m_fixture->service->Requests();
        QCOMPARE(
            QString::fromStdString(requests.back().body).chopped(1).replace(u'\t', u'|').replace(u'\n', u'~'),
            u"{1}|Letters|C:\\Docs~D:\\Work~E:\\More|/V/Other|*|~~thumbs.db~~|||5|0|Snapshotbackup"_s);
        QCOMPARE(m_fixture->service->FindTask("{1}")->description,
                 std::string("C:\\Docs\nD:\\Work\nE:\\More\t/V/Other\t*"));
        page.Turn(RowOf(u"{1}"_s));
        QVERIFY(Shown(page).contains(u"Folder=E:\\More, "_s) && !Shown(page).contains(u'!'));
    }

    void servesTheScheduleByItsDialog() {
        BackupSettingsPage page(m_fixture->console);
        page.Turn(RowOf(u"{2}"_s));
        m_fixture->Open(page);
        Open(page, u"Schedule"_s, 1);
        auto* dialog = page.findChild<CSchedulerPage*>();
        QCOMPARE(dialog->Schedule().time, QTime(21, 0)); // of the next run
        dialog->findChild<QComboBox*>()->setCurrentIndex(1);
        dialog->accept();
        QVERIFY(
            Shown(page).contains(u"Schedule=Backup task will start at 21:0:0 every day after 2025-3-4!"_s));
        m_fixture->service->ForgetRequests();
        m_fixture->Click(u"Save"_s);
        QVERIFY(m_fixture->service->Requests().back().body.find("1 2025 3 4 21 0 0 1 1 1 1 1 1 1 0\n") !=
                std::string::npos);
    }

    void keepsWhatWasNotSavedForEachBackup() {
        BackupSettingsPage page(m_fixture->console);
        page.Turn(RowOf(u"{1}"_s));
        m_fixture->Open(page);
        Type(page, u"Included Extensions"_s, 1, u".txt"_s);
        page.Turn(RowOf(u"{2}"_s));
        QVERIFY(!Shown(page).contains(u'!'));
        page.Turn(RowOf(u"{1}"_s));
        QVERIFY(Shown(page).contains(u"Extensions=.txt!"_s));
        m_fixture->Click(u"Discard"_s);
        QVERIFY(!Shown(page).contains(u'!'));
        // A source that is emptied goes, but not the last one.
        Type(page, u"Source Folders"_s, 1, {});
        QVERIFY(!Shown(page).contains(u"C:\\Docs"_s));
        m_fixture->prompts.ExpectMessage(u"Please select at least one folder to backup!"_s);
        Type(page, u"Source Folders"_s, 1, {});
        QVERIFY(Shown(page).contains(u"Folder=D:\\Work"_s));
    }

    void takesNothingForAServiceThatOffersNoSwitch_data() {
        const Columns<QString, QString> row("setting", "notice");
        row("0", "This service offers no such switch.");
        row("", "The service does not tell whether it takes changed settings. It is asked again by itself.");
    }

    void takesNothingForAServiceThatOffersNoSwitch() {
        const auto [setting, notice] = Fetched<QString, QString>();
        if (setting.isEmpty())
            m_fixture->service->SetFault(HttpFault::Refuse);
        else
            m_fixture->service->SetSetting("ConsoleRecords", setting.toStdString());
        BackupSettingsPage page(m_fixture->console);
        page.Turn(RowOf(u"{1}"_s));
        m_fixture->Open(page);
        QCOMPARE(page.findChild<NoticeLine*>()->Text(), notice);
        for (const CPropertyGroup* group : page.findChild<CBrenPropertyGrid*>()->Groups())
            for (int row = 1; row < group->RowCount(); ++row)
                QVERIFY(group->GetRow(row)->readOnly);
    }

    void theSectionOffersAllByName() {
        CBackupPanel panel(m_fixture->console);
        panel.resize(760, 560);
        m_fixture->Open(panel);
        panel.SelectPage(1);
        m_fixture->reader.StepAll();
        emit panel.findChild<CBackupTaskList*>()->FindCard(u"Photos"_s)->Toggled();
        panel.SelectPage(3);
        m_fixture->reader.StepAll();
        auto* names = panel.findChild<BackupSettingsPanel*>()->findChild<QComboBox*>();
        QStringList offered;
        for (int at = 0; at < names->count(); ++at)
            offered.append(names->itemText(at));
        QCOMPARE(offered, QStringList({u"Cloud"_s, u"Letters"_s, u"Photos"_s}));
        QCOMPARE(names->currentText(), u"Photos"_s);
        names->setCurrentIndex(1);
        m_fixture->Refresh(panel);
        QCOMPARE(names->currentText(), u"Letters"_s);
        QVERIFY(Shown(*panel.findChild<BackupSettingsPanel*>()).contains(u"Name=Letters"_s));
    }

private:
    void Put(const std::string& id, const std::string& name, const std::string& type,
             const std::string& description) {
        Task task = MakeTask(id, name, type);
        task.description = description;
        m_fixture->service->PutTask(task);
    }

    TaskRow RowOf(const QString& id) const {
        CardEntries entries = ReadTaskList([](const TaskRecord&) { return true; }, m_fixture->counters, {});
        for (const CardEntry* entry : entries.all)
            if (entry->id == id)
                return static_cast<const TaskRow&>(*entry);
        return {};
    }

    /// The grid as text: "?" is unknown, "!" not saved.
    static QString Shown(const QWidget& page) {
        QStringList groups;
        for (const CPropertyGroup* group : page.findChildren<CBrenPropertyGrid*>().last()->Groups()) {
            QStringList rows;
            for (int row = 1; row < group->RowCount(); ++row) {
                const PropertyRow shown = *group->GetRow(row);
                const QString mark = shown.mark == PropertyMark::Unknown    ? u"?"_s
                                     : shown.mark == PropertyMark::NotSaved ? u"!"_s
                                                                            : QString();
                rows.append(shown.label + u'=' + shown.value + mark);
            }
            groups.append(group->GetRow(0)->label + u": "_s + rows.join(u", "_s));
        }
        return groups.join(u"; "_s);
    }

    static CPropertyGroup& GroupOf(const QWidget& page, const QString& title) {
        const auto& groups = page.findChildren<CBrenPropertyGrid*>().last()->Groups();
        return **std::find_if(groups.begin(), groups.end(),
                              [&](const CPropertyGroup* group) { return group->GetRow(0)->label == title; });
    }

    static void Open(const QWidget& page, const QString& group, int row) {
        GroupOf(page, group).OpenEditor(row);
        QCoreApplication::processEvents();
    }

    /// Over a folder on a drive the editor asks for another one at once, but when typing has begun.
    static void Type(const QWidget& page, const QString& title, int row, const QString& text) {
        CPropertyGroup& group = GroupOf(page, title);
        group.OpenEditor(row, CPropertyGroup::EditorStart::Typing);
        auto* editor = qobject_cast<QLineEdit*>(group.Editor());
        editor->setText(text);
        QTest::keyClick(editor, Qt::Key_Return);
        QCoreApplication::processEvents();
    }

    std::unique_ptr<PageFixture<>> m_fixture;
};

BTASK_TEST(BackupSettingsTest);
#include "BackupSettingsTest.moc"
