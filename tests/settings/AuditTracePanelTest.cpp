#include "settings/AuditTracePanel.h"
#include "page/SectionLinks.h"
#include "page/StateFile.h"
#include "settings/SettingsPanel.h"
#include "support/PageFixture.h"
#include "support/TableHand.h"
#include "support/TestMain.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>

using namespace Qt::Literals::StringLiterals;
using devservice::MakeTime;

namespace {

/// What a user sees of the page and does to it.
struct Viewer : PageFixture<> {
    Viewer() {
        service->Execute(service->DatabaseFile(devservice::Database::AuditTrace), "DELETE FROM AuditTrace");
        service->AddAuditRows({{0, "$$KEY$ first", MakeTime(2025, 3, 3, 9, 0)},
                               {2, "second failed", MakeTime(2025, 3, 4, 0, 0)},
                               {1, "$$KEY$ third", MakeTime(2025, 3, 4, 12, 0)},
                               {2, "fourth failed", MakeTime(2025, 3, 5, 12, 0)},
                               {7, "$$KEY", MakeTime(2025, 3, 6, 12, 0)}});
        QSettings(StateFile(), QSettings::IniFormat).remove(u"AuditTrace"_s);
        panel = std::make_unique<CAuditTracePanel>(console);
        panel->resize(700, 500);
        Open(*panel);
    }

    QCheckBox* Box(const QString& words) const {
        for (auto* box : panel->findChildren<QCheckBox*>())
            if (box->text().startsWith(words))
                return box;
        return nullptr;
    }
    QLineEdit* Field(const QString& name) const {
        for (auto* field : panel->findChildren<QLineEdit*>())
            if (field->accessibleName() == name)
                return field;
        return nullptr;
    }
    QPushButton* Button() const { return panel->findChild<QPushButton*>(); }
    TableHand Table() const { return TableHand(*panel); }
    QStringList Messages() const { return Table().Column(2); }

    /// The text above the table.
    QString Line() const {
        for (auto* label : panel->findChildren<QLabel*>())
            if (label->wordWrap())
                return label->text();
        return {};
    }

    void Press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(Table().operator->(), key, modifiers);
    }
    /// Asks and waits for the answer.
    void Query() {
        Button()->click();
        reader.StepAll();
    }

    std::unique_ptr<CAuditTracePanel> panel;
};

void SetDays(const Viewer& viewer, const QDate& from, const QDate& to) {
    const auto days = viewer.panel->findChildren<QDateEdit*>();
    days.at(0)->setDate(from);
    days.at(1)->setDate(to);
}

} // namespace

class AuditTracePanelTest : public QObject {
    Q_OBJECT

private slots:
    void listsWhatIsAskedFor() {
        Viewer viewer;
        QCOMPARE(viewer.Messages(), QStringList());
        QVERIFY(viewer.frame.StatusText().startsWith("Input trace filters and click the query button"_L1));
        viewer.Query();
        QCOMPARE(viewer.Messages(),
                 QStringList({{}, u"fourth failed"_s, u"third"_s, u"second failed"_s, u"first"_s}));
        // The first row has no row before it, whose colour an unknown level would take.
        QCOMPARE(viewer.Table().Column(0),
                 QStringList({{}, u"#COLOR:RED"_s, u"#COLOR:YELLOW"_s, u"#COLOR:RED"_s, u"#COLOR:GREEN"_s}));
        QCOMPARE(viewer.Line(), u"5 rows"_s);
        QVERIFY(viewer.Box(u"Error 2"_s) && viewer.Box(u"Warning 1"_s) && viewer.Box(u"Information 1"_s));
        viewer.panel->Deactivate(); // whoever comes back finds the rows, and nothing is read
        viewer.Open(*viewer.panel);
        QCOMPARE(viewer.Messages().size(), 5);

        QTest::keyClicks(viewer.Field(u"Text that traces contain"_s), u"FAILED"_s); // chooses its box too
        viewer.Field(u"Maximum Traces to Show (0-Limited)"_s)->setText(u"1"_s);
        QTest::keyClick(viewer.Field(u"Text that traces contain"_s), Qt::Key_Return);
        viewer.reader.StepAll();
        QCOMPARE(viewer.Messages(), QStringList{u"fourth failed"_s});
        QCOMPARE(viewer.Line(), u"1 row (limit reached)"_s);
    }

    void timesAreOneChoice() {
        Viewer viewer;
        SetDays(viewer, QDate(2025, 3, 5), QDate(2025, 3, 4));
        QVERIFY(viewer.Box(u"Only Show Traces Between"_s)->isChecked());
        viewer.Query();
        QCOMPARE(viewer.Messages(), QStringList({u"third"_s, u"second failed"_s}));
        viewer.service->Execute(viewer.service->DatabaseFile(devservice::Database::AuditTrace),
                                "INSERT INTO AuditTrace VALUES(0,'now',datetime('now','localtime'))");
        viewer.Box(u"Only Show Traces of the Last"_s)->click();
        QVERIFY(!viewer.Box(u"Only Show Traces Between"_s)->isChecked());
        viewer.Query();
        QCOMPARE(viewer.Messages(), QStringList{u"now"_s});
    }

    void aRunIsShownWithinTheSection() {
        Viewer viewer;
        CSettingsPanel settings(viewer.console);
        viewer.Open(settings);
        settings.ShowTraces(u"2025-03-04 00:00:00"_s, u"2025-03-05 12:00:00"_s);
        viewer.reader.StepAll();
        QVERIFY(qobject_cast<CAuditTracePanel*>(settings.CurrentPage()));
        QCOMPARE(TableHand(settings).Column(2).size(), 3);
        // These times are a task's and no filter that one would want again.
        QSettings state(StateFile(), QSettings::IniFormat);
        QVERIFY(!state.childGroups().contains("AuditTrace"_L1));
    }

    void aFilterThatIsNoneIsToldAboveTheTable() {
        Viewer viewer;
        viewer.Query();
        QTest::keyClicks(viewer.Field(u"Text that traces contain"_s), u"it's"_s);
        viewer.Query();
        QCOMPARE(viewer.Line(), u"The filter could not be understood"_s);
        QCOMPARE(viewer.Messages(), QStringList());
        QCOMPARE(viewer.frame.notice, QString());
        viewer.Box(u"Only Show Traces Containing"_s)->setChecked(false);
        viewer.service->SetFault(devservice::DatabaseFault::Locked, devservice::Database::AuditTrace);
        viewer.Query();
        QVERIFY(viewer.frame.notice.contains("locked"_L1)); // what is no fault of the filter is told as ever
        QCOMPARE(viewer.Line(), u"0 rows (broken off)"_s);
    }

    void copiesWhatWasRead() {
        Viewer viewer;
        viewer.Query();
        viewer.Box(u"Error"_s)->click(); // hidden rows were read too
        viewer.prompts.ExpectMessage(u"All trace items have been copied to clipboard"_s);
        viewer.Click(u"Copy To Clipboard"_s);
        QCOMPARE(viewer.prompts.clipboardText, u"2025-03-06 12:00:00    \r\n"
                                               "2025-03-05 12:00:00    fourth failed\r\n"
                                               "2025-03-04 12:00:00    third\r\n"
                                               "2025-03-04 00:00:00    second failed\r\n"
                                               "2025-03-03 09:00:00    first\r\n"_s);
        viewer.Button()->click(); // a query is under way
        QVERIFY(!viewer.frame.Captions().contains("Copy To Clipboard"_L1));
    }

    void aQueryIsStopped() {
        Viewer viewer;
        viewer.Button()->click();
        QCOMPARE(viewer.Button()->text(), u"Stop"_s);
        QCOMPARE(viewer.Line(), u"0 rows so far"_s);
        QVERIFY(viewer.reader.Work(Lane::Databases)); // the rows are on their way to the window
        QTest::keyClick(viewer.Field(u"Text that traces contain"_s), Qt::Key_Return); // begins no second one
        viewer.Button()->click();
        viewer.reader.Finish();
        QCOMPARE(viewer.Button()->text(), u"Query"_s);
        QCOMPARE(viewer.Messages().size(), 5); // what has come stays
        viewer.Button()->click();
        viewer.Button()->click();
        viewer.reader.StepAll();
        QCOMPARE(viewer.Line(), u"0 rows (stopped)"_s);
    }

    void levelsAreHiddenAndErrorsFound() {
        Viewer viewer;
        viewer.Query();
        const auto current = [&viewer] { return viewer.Table()->currentIndex().row(); };
        viewer.Press(Qt::Key_F8);
        QCOMPARE(current(), 1);
        viewer.Press(Qt::Key_F8);
        QCOMPARE(current(), 3);
        viewer.Press(Qt::Key_F8); // and round again
        QCOMPARE(current(), 1);
        viewer.Press(Qt::Key_F8, Qt::ShiftModifier);
        QCOMPARE(current(), 3);
        viewer.Box(u"Warning"_s)->click();
        viewer.Box(u"Information"_s)->click();
        QCOMPARE(viewer.Messages(), QStringList({{}, u"fourth failed"_s, u"second failed"_s}));
        QCOMPARE(current(), 2);
        viewer.Query(); // they stay hidden
        QCOMPARE(viewer.Messages().size(), 3);
        viewer.Box(u"Warning"_s)->click();
        QCOMPARE(viewer.Messages().size(), 4);
    }

    void theLastFilterIsRemembered() {
        Viewer viewer;
        QTest::keyClicks(viewer.Field(u"Text that traces contain"_s), u"a, \"b\"=;"_s);
        SetDays(viewer, QDate(2025, 3, 3), QDate(2025, 3, 5));
        viewer.Field(u"Maximum Traces to Show (0-Limited)"_s)->setText(u"00"_s);
        viewer.Query();
        QCOMPARE(viewer.Line(), u"0 rows (limit reached)"_s); // two zeros are a limit
        viewer.panel = std::make_unique<CAuditTracePanel>(viewer.console);
        viewer.Open(*viewer.panel);
        QCOMPARE(viewer.Field(u"Text that traces contain"_s)->text(), u"a, \"b\"=;"_s);
        QCOMPARE(viewer.Field(u"Maximum Traces to Show (0-Limited)"_s)->text(), u"00"_s);
        QVERIFY(viewer.Box(u"Only Show Traces Containing"_s)->isChecked());
        QVERIFY(viewer.Box(u"Only Show Traces Between"_s)->isChecked());
        QCOMPARE(viewer.panel->findChildren<QDateEdit*>().at(1)->date(), QDate(2025, 3, 5));
    }
};

BTASK_TEST(AuditTracePanelTest);

#include "AuditTracePanelTest.moc"
