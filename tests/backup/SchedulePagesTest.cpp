#include "backup/AdvSchedule.h"
#include "backup/ScheduleEditor.h"
#include "backup/SchedulerPage.h"

#include "plan/NextRuns.h"
#include "support/ScriptedPrompts.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"
#include "wizard/Form.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QLocale>

using namespace Qt::Literals::StringLiterals;

namespace {

template <typename Field>
Field& The(QWidget& dialog) {
    return *dialog.findChild<Field*>();
}

QString VisibleTexts(QWidget& dialog) {
    QStringList texts;
    for (const QLabel* label : dialog.findChildren<QLabel*>())
        if (label->isVisible() && !label->text().isEmpty())
            texts.append(label->text());
    return texts.join(u'\n');
}

void Press(QWidget& dialog, const QString& caption) {
    for (QPushButton* button : dialog.findChildren<QPushButton*>())
        if (button->text() == caption)
            QTest::mouseClick(button, Qt::LeftButton);
}

const BackupSchedule Before{ScheduleMode::Weekdays,
                            QDate(2031, 3, 4),
                            QTime(9, 5, 7),
                            {false, true, false, false, false, false, false}};

} // namespace

class SchedulePagesTest : public QObject {
    Q_OBJECT

private slots:
    void cleanup() { qunsetenv("TZ"); }

    void theDialogShowsWhatWasChosenLast_data() {
        const Columns<ScheduleForm, int, QString> row("form", "choice", "string");
        row("desktop", ScheduleForm::Dialog, 0, "0 2031 3 4 9 5 7 0 1 0 0 0 0 0\n");
        row("desktop, daily", ScheduleForm::Dialog, 1, "1 2031 3 4 9 5 7 0 1 0 0 0 0 0\n");
        row("server", ScheduleForm::Server, 0, "1 2031 3 4 9 5 7 0 1 0 0 0 0 0\n");
        row("server, weekdays", ScheduleForm::Server, 1, "2 2031 3 4 9 5 7 0 1 0 0 0 0 0\n");
    }

    void theDialogShowsWhatWasChosenLast() {
        const auto [form, choice, string] = Fetched<ScheduleForm, int, QString>();
        ScriptedPrompts prompts;
        CSchedulerPage dialog(prompts, form, Before);
        dialog.open();
        QCOMPARE(dialog.Texts().string, u"2 2031 3 4 9 5 7 0 1 0 0 0 0 0\n"_s);
        The<QComboBox>(dialog).setCurrentIndex(choice);
        const bool starts = dialog.Schedule().mode != ScheduleMode::Continuous;
        QCOMPARE(The<QDateEdit>(dialog).isVisible(), starts);
        QCOMPARE(The<QTimeEdit>(dialog).isVisible(), starts);
        QCOMPARE(The<QCheckBox>(dialog).isVisible(), dialog.Schedule().mode == ScheduleMode::Weekdays);
        QVERIFY(VisibleTexts(dialog).contains(ModeDescription(form, dialog.Schedule().mode)));
        Press(dialog, u"&Apply"_s);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.Texts().string, string);
    }

    void theDialogWantsAWeekday() {
        ScriptedPrompts prompts;
        CSchedulerPage dialog(prompts, ScheduleForm::Dialog, Before);
        dialog.open();
        QCheckBox& sunday = The<QCheckBox>(dialog);
        const QString monday = QLocale().toString(QDate(2031, 3, 10), DateForm(QLocale()));
        QVERIFY2(VisibleTexts(dialog).contains(monday), qPrintable(VisibleTexts(dialog)));
        QTest::mouseClick(dialog.findChildren<QCheckBox*>()[1], Qt::LeftButton);
        QVERIFY2(VisibleTexts(dialog).contains(u"None: no weekday is ticked."_s),
                 qPrintable(VisibleTexts(dialog)));
        prompts.ExpectMessage(u"At least one weekday needs to be selected!"_s);
        Press(dialog, u"&Apply"_s);
        QVERIFY(prompts.IsPlayed() && dialog.isVisible());
        QCOMPARE(dialog.focusWidget(), &sunday);
        QTest::keyClick(&sunday, Qt::Key_Space);
        QTest::keyClick(&dialog, Qt::Key_Return);
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.Texts().string, u"2 2031 3 4 9 5 7 1 0 0 0 0 0 0\n"_s);
    }

    void runsThatTheClockDoublesCarryARemark() {
        ScheduleEditor editor(ScheduleForm::Mirrored, QTimeZone("Europe/Berlin"));
        editor.show();
        BackupSchedule schedule = Before;
        schedule.mode = ScheduleMode::Daily;
        schedule.date = QDate(2031, 10, 26);
        for (const auto& [time, remarks] : {std::pair(QTime(1, 30), 0), {QTime(2, 30), 1}}) {
            schedule.time = time;
            editor.SetSchedule(schedule);
            QCOMPARE(VisibleTexts(editor).count(ClockRemark(PlannedRun::Clock::Doubled)), remarks);
        }
    }

    /// The computer's own clock turns what was chosen into nothing else.
    void timesThatTheClockSkipsAreKept() {
        qputenv("TZ", "America/Sao_Paulo");
        ScriptedPrompts prompts;
        CSchedulerPage dialog(prompts, ScheduleForm::Dialog, Before);
        dialog.open();
        The<QDateEdit>(dialog).setDate(QDate(2018, 11, 4));
        The<QTimeEdit>(dialog).setTime(QTime(0, 30));
        QCOMPARE(dialog.Texts().string, u"2 2018 11 4 0 30 0 0 1 0 0 0 0 0\n"_s);
    }

    void theWizardsPageTakesNoWeekdayToo() {
        SteppingReader reader;
        ScriptedPrompts prompts;
        const auto schedule = std::make_shared<BackupSchedule>();
        auto* sheet = new CBrenPropertySheet(reader, prompts, u"Backup"_s);
        sheet->AddPage(new CAdvSchedule(ScheduleForm::Mirrored, schedule));
        QCOMPARE(schedule->mode, ScheduleMode::Continuous);
        QVERIFY(schedule->date.isValid());
        WizardRider rider(sheet, reader);
        QVERIFY(rider.Ride(
            u"page When to Backup | says Chosen: Backup Task Will Start When Changes Are Detected | "
            "Schedule=Custom Backup Schedule (changes are scheduled)"_s));
        for (QCheckBox* box : sheet->findChildren<QCheckBox*>())
            if (box->isChecked() || !box->text().endsWith(u"day"_s))
                QTest::mouseClick(box, Qt::LeftButton);
        QVERIFY(rider.Ride(u"Finish | finished"_s));
        QCOMPARE(schedule->mode, ScheduleMode::Weekdays);
        QVERIFY(schedule->box && schedule->weekdays == (std::array<bool, 7>{}));
    }

    void aLinkLeadsBackToIt() {
        SteppingReader reader;
        ScriptedPrompts prompts;
        auto* sheet = new CBrenPropertySheet(reader, prompts, u"Backup"_s);
        const auto schedule = std::make_shared<BackupSchedule>();
        auto* when = new CAdvSchedule(ScheduleForm::Snapshot, schedule);
        auto* leftOut = new WizardPage(u"Left out"_s, {});
        auto* last = new WizardPage(u"Confirm"_s, {});
        for (WizardPage* page :
             {static_cast<WizardPage*>(when), leftOut, new WizardPage(u"Between"_s, {}), last})
            sheet->AddPage(page);
        sheet->LeaveOut(*leftOut, true);
        WizardRider rider(sheet, reader);
        QVERIFY(rider.Ride(u"Schedule=Custom Backup Schedule | Next | Next | page Confirm"_s));
        for (const WizardPage* page : {leftOut, last}) {
            sheet->GoBackTo(*page);
            QVERIFY(rider.Ride(u"page Confirm"_s));
        }
        sheet->GoBackTo(*when);
        QVERIFY(rider.Ride(u"page When to Backup | off Back | Schedule==Custom Backup Schedule | "
                           "Schedule=Daily Backup | Next | page Between | Back | page When to Backup"_s));
        QCOMPARE(schedule->mode, ScheduleMode::Daily);
    }
};

BTASK_TEST(SchedulePagesTest);
#include "SchedulePagesTest.moc"
