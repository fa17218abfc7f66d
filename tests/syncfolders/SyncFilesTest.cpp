// Labels: threads painting
#include "SyncFolderPage.h"
#include "list/CellMarkup.h"
#include "page/LinkLabel.h"
#include "page/TabPanel.h"
#include "support/TableHand.h"
#include "support/TestMain.h"
#include "syncfolders/DropFolder.h"
#include "syncfolders/DropFolderChanges.h"
#include "syncfolders/SyncSummary.h"
#include "syncplan/LocalFolder.h"

#include <QDir>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

/// What is seen of a sync folder's files: the summary, the change log, the versions.
class SyncFilesTest : public QObject, private SyncFolderPage {
    Q_OBJECT

private slots:
    void init() { Begin(); }
    void cleanup() { End(); }

    void theSummaryShowsAndOpens() {
        Open();
        Service().Advance(20min);
        Put(TaskState::Running, 600, 0);
        m_fixture->Refresh(*m_panel);
        Expand();
        const TableHand table(*Card().findChild<SyncSummary*>());
        QCOMPARE(table.Column(1).mid(0, 2), QStringList({u"Team"_s, Local()}));
        const QStringList titles = table.Column(0);
        QCOMPARE(titles[4], u"Recent Changed Files"_s);
        QVERIFY(titles.indexOf(u"Pending Subtasks"_s) > 6);
        m_fixture->prompts.ExpectMessage(u'"' + Local() + u"\" is not there."_s);
        table.Click(1, 1);
        Settle();
        const QString file = table.Cells(5)[1];
        QVERIFY(file.startsWith("/Team/"_L1));
        m_fixture->prompts.ExpectMessage(u'"' + QDir::toNativeSeparators(Local() + file.mid(5)) +
                                         u"\" is not there."_s);
        table->setCurrentIndex(table->model()->index(5, 1));
        QTest::keyClick(table.operator->(), Qt::Key_Return);
        Settle();
        QVERIFY(m_fixture->prompts.IsPlayed());
    }

    void changesLeadToVersionsAndBack() {
        QVERIFY(QDir().mkpath(Local()));
        Open();
        Service().Advance(40min);
        Expand();
        auto* tabs = Card().findChild<CTabPanel*>();
        tabs->SelectPage(2);
        m_fixture->reader.StepAll();
        QVERIFY(m_fixture->frame.StatusText().contains(u"latest 200"_s));
        const TableHand changes(*Card().findChild<CDropFolderChanges*>());
        const int row = int(changes.Column(0).lastIndexOf(u"/Team/photos/hall.jpg"_s));
        QVERIFY(row >= 0);
        QCOMPARE(changes.Cells(row)[1], u"Added"_s);
        changes.Click(row, 5);
        Settle();
        QCOMPARE(tabs->CurrentIndex(), 1);
        const auto lists = Versions().findChildren<CBrenListCtrl*>();
        const auto cell = [&lists](int list, int at, int column) {
            return WordsOfCell(lists[list]->Rows().CellText(at, column));
        };
        QCOMPARE(cell(0, 0, 1), u".."_s);
        QVERIFY(lists[1]->Rows().rowCount() > 1);
        QCOMPARE(cell(1, 0, 0), u"1"_s);
        QCOMPARE(cell(1, 0, 6), QString());
        QCOMPARE(cell(1, 1, 6), u"restore to this version"_s);

        const int before = lists[1]->Rows().rowCount();
        const auto revert = [&](bool yes) {
            m_fixture->prompts.ExpectQuestion(Asked(cell(1, 1, 5), cell(1, 0, 5), cell(1, 1, 2)), yes);
            if (yes)
                m_fixture->prompts.ExpectMessage(u"The restore operation is successful."_s);
            QTest::mouseClick(lists[1]->viewport(), Qt::LeftButton, {},
                              lists[1]->visualRect(lists[1]->Rows().index(1, 6)).center());
            Settle();
        };
        revert(false);
        QCOMPARE(lists[1]->Rows().rowCount(), before);
        QCOMPARE(m_fixture->prompts.asked.beside, u"Open Folder"_s);
        QVERIFY(m_fixture->prompts.asked.destroys);
        revert(true);
        QCOMPARE(lists[1]->Rows().rowCount(), before + 1);
        QVERIFY(m_fixture->prompts.IsPlayed());
    }

    void foldersAreBrowsed() {
        Open();
        Service().Advance(40min);
        Expand();
        Card().findChild<CTabPanel*>()->SelectPage(1);
        m_fixture->reader.StepAll();
        auto* files = Versions().findChildren<CBrenListCtrl*>().first();
        const auto click = [&](const QString& name, int column) {
            for (int row = 0; row < files->Rows().rowCount(); ++row)
                if (files->Rows().CellText(row, 1) == name)
                    QTest::mouseClick(files->viewport(), Qt::LeftButton, {},
                                      files->visualRect(files->Rows().index(row, column)).center());
            Settle();
        };
        Service().ForgetRequests();
        click(u"photos"_s, 0); // the link in front works, too
        QVERIFY(PathText().endsWith(": /photos"_L1));
        click(u".."_s, 1);
        QVERIFY(PathText().endsWith(": /"_L1));
        const QString top = u"PROPFIND /resources/43811DCD-8C5A-4EF9-B903-2EEA9CE88487/Team"_s;
        QCOMPARE(m_fixture->service.RequestLines(), QStringList({top + u"/photos"_s, top}));
    }

    void namesThatNoRequestCarriesAreShownAndNotFollowed() {
        Open();
        Expand();
        const auto entry = [](const char* name) {
            return "<D:response><D:href>/x</D:href><D:displayname>" + std::string(name) +
                   "</D:displayname><D:iscollection>1</D:iscollection><D:getlastmodified>t</"
                   "D:getlastmodified>"
                   "</D:response>";
        };
        Service().SetAnswer("/resources/43811DCD",
                            devservice::Answer{207, "<D:multistatus>" + entry("..") + entry("a?b") +
                                                        entry("50%20") + "</D:multistatus>"});
        Card().findChild<CTabPanel*>()->SelectPage(1);
        Settle();
        auto* files = Versions().findChildren<CBrenListCtrl*>().first();
        QCOMPARE(files->Rows().rowCount(), 3);
        Service().ForgetRequests();
        for (int row = 0; row < 3; ++row) {
            QTest::mouseClick(files->viewport(), Qt::LeftButton, {},
                              files->visualRect(files->Rows().index(row, 1)).center());
            Settle();
            QVERIFY(m_fixture->frame.StatusText().contains(u"cannot carry"_s));
            QVERIFY(PathText().endsWith(": /"_L1));
        }
        QCOMPARE(m_fixture->service.RequestLines().filter(u"PROPFIND"_s), QStringList());
    }

    void allIsComparedAgainOnlyWhereThatIsOffered() {
        for (const bool offered : {true, false}) {
            Service().SetSetting("ConsoleRecords", offered ? "1" : "0");
            m_panel = std::make_unique<CDropFolderList>(m_fixture->console);
            m_panel->resize(900, 600);
            Open();
            Expand();
            Card().findChild<CTabPanel*>()->SelectPage(1);
            m_fixture->reader.StepAll();
            LinkLabel* force = nullptr;
            for (auto* link : Versions().findChildren<LinkLabel*>())
                force = link->Spans().value(0) == "Force Re-Sync"_L1 ? link : force;
            QVERIFY(force);
            QCOMPARE(force->isEnabled(), offered);
            QCOMPARE(force->accessibleDescription().isEmpty(), offered);
            if (!offered)
                continue;
            Service().SetSetting("LST_Team", "x");
            m_fixture->prompts.ExpectQuestion(u"All files of the folder will be compared again. Continue?"_s,
                                              true);
            m_fixture->prompts.ExpectMessage(
                u"Sync task has been scheduled, please check task manager for status"_s);
            emit force->LinkClicked(0);
            m_fixture->reader.StepAll();
            QCOMPARE(Service().Setting("LST_Team"), std::optional<std::string>(""));
        }
    }

private:
    CDropFolder& Versions() { return *Card().findChild<CDropFolder*>(); }

    QString PathText() {
        for (const auto* label : Versions().findChildren<QLabel*>())
            if (label->text().startsWith("Current Path"_L1))
                return label->text();
        return {};
    }

    QString Asked(const QString& from, const QString& presentFrom, const QString& when) const {
        const QString path = QDir::toNativeSeparators(Local() + "/photos/hall.jpg"_L1);
        return u"Do you really want to revert to the version?\nNow: "_s + path + u", "_s +
               LocalFileText(path) + u", from "_s + presentFrom + u"\nThen: version 2 of it, "_s + when +
               u", from "_s + from + u"; the service does not tell its size"_s;
    }
};

BTASK_TEST(SyncFilesTest);
#include "SyncFilesTest.moc"
