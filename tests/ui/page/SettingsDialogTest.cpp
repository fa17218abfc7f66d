#include "page/SettingsDialog.h"
#include "page/NoticeLine.h"
#include "page/NumberField.h"
#include "page/SettingNews.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr Setting<int> Limit{"Limit", 7};
const Setting<QString> Writer{"Writer"};
constexpr Setting<bool> Switch{"Switch", false};

/// A dialog over three settings.
class SampleDialog : public SettingsDialog {
public:
    SampleDialog(const ServiceClient& service, Reader& reader)
        : SettingsDialog(service, reader, u"Sample"_s, nullptr) {
        limit = AddNumber(Limit, u"&Limit (KB/S)"_s);
        writer = AddText(Writer, u"&Writer:"_s);
        on = AddCheck(Switch, u"&Switch"_s);
        note = AddNote(u"A note."_s);
    }

    NumberField* limit;
    QLineEdit* writer;
    QCheckBox* on;
    QLabel* note;
};

struct DialogFixture : PageFixture<> {
    SampleDialog dialog{client, reader};

    void Show() {
        dialog.show();
        dialog.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
    }
    QPushButton* Button(QDialogButtonBox::StandardButton which) {
        return dialog.findChild<QDialogButtonBox*>()->button(which);
    }
    bool IsReady() { return Button(QDialogButtonBox::Ok)->isEnabled() && dialog.limit->isEnabled(); }
    QString Notice() {
        const auto* notice = dialog.findChild<NoticeLine*>();
        return notice->isVisible() ? notice->Text() : QString();
    }
    /// A key for whatever has the keyboard.
    void Press(Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); }
    void Type(const QString& text) { QTest::keyClicks(QApplication::focusWidget(), text); }
    QStringList Written() {
        return service.RequestLines().filter(u"PUT "_s).replaceInStrings(u"PUT /settings/"_s, QString());
    }
};

} // namespace

class SettingsDialogTest : public QObject {
    Q_OBJECT

private slots:
    void theKeyboardAloneWritesWhatChanged() {
        DialogFixture fixture;
        fixture.service->SetSetting("Limit", "20");
        fixture.service->SetSetting("Writer", "Ann");
        QSignalSpy written(&fixture.dialog, &CBrenDialog::Written);
        fixture.Show();
        QVERIFY(!fixture.IsReady());
        fixture.reader.StepAll();
        QVERIFY(fixture.IsReady());
        QCOMPARE(QApplication::focusWidget(), fixture.dialog.limit);
        fixture.Type(u"35"_s); // over what was read, which is selected
        fixture.Press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), fixture.dialog.writer);
        QCOMPARE(fixture.dialog.writer->text(), u"Ann"_s);
        fixture.Press(Qt::Key_Tab);
        fixture.Press(Qt::Key_Space);
        fixture.Press(Qt::Key_Return);
        QVERIFY2(fixture.dialog.isVisible(), "not before the service has answered");
        fixture.reader.StepAll();
        QVERIFY(!fixture.dialog.isVisible());
        QCOMPARE(fixture.dialog.result(), int(QDialog::Accepted));
        QCOMPARE(fixture.Written(),
                 (QStringList{u"Limit?ValueType=1&Value=35"_s, u"Switch?ValueType=4&Value=True"_s}));
        QCOMPARE(written.size(), 2);
    }

    void nothingChangedAndNothingWanted_data() {
        const Columns<Qt::Key, int> row("key", "result");
        row("enter", Qt::Key_Return, int(QDialog::Accepted));
        row("escape", Qt::Key_Escape, int(QDialog::Rejected));
    }

    void nothingChangedAndNothingWanted() {
        const auto [key, result] = Fetched<Qt::Key, int>();
        DialogFixture fixture;
        fixture.Show();
        fixture.reader.StepAll();
        if (key == Qt::Key_Escape)
            fixture.Type(u"35"_s);
        fixture.Press(key);
        fixture.reader.StepAll();
        QVERIFY(!fixture.dialog.isVisible());
        QCOMPARE(fixture.dialog.result(), result);
        QCOMPARE(fixture.Written(), QStringList());
    }

    void nothingIsTakenBeforeAllIsRead_data() {
        const Columns<QString> row("fault");
        row("refuse");
        row("status:500@Switch");
        row("fin@Writer");
    }

    void nothingIsTakenBeforeAllIsRead() {
        QFETCH(QString, fault);
        DialogFixture fixture;
        fixture.service->SetSetting("Limit", "20");
        fixture.service->SetSetting("Writer", "Ann Writer");
        QVERIFY(fixture.service->SetFault(fault.toStdString()));
        fixture.Show();
        fixture.reader.StepAll();
        QVERIFY(!fixture.IsReady());
        QVERIFY(fixture.Notice().contains(u"does not answer"));
        fixture.Press(Qt::Key_Return);
        fixture.reader.StepAll();
        QVERIFY(fixture.dialog.isVisible());
        QCOMPARE(fixture.Written(), QStringList());

        fixture.service->ClearFaults();
        QTRY_VERIFY((fixture.reader.StepAll(), fixture.IsReady()));
        QCOMPARE(fixture.Notice(), QString());
        QCOMPARE(fixture.dialog.limit->text(), u"20"_s);
    }

    void aFailedWriteKeepsWhatWasTyped() {
        DialogFixture fixture;
        fixture.Show();
        fixture.reader.StepAll();
        fixture.Type(u"35"_s);
        fixture.service->SetAnswer("/settings/Limit?", devservice::Answer{500, {}});
        fixture.Press(Qt::Key_Return);
        QVERIFY(!fixture.IsReady());
        fixture.Press(Qt::Key_Return);
        fixture.Press(Qt::Key_Space);
        fixture.reader.StepAll();
        QCOMPARE(fixture.Written().size(), 1);
        QVERIFY(fixture.dialog.isVisible() && fixture.IsReady());
        QVERIFY2(fixture.Notice().contains(u"\"Limit (KB/S)\" was not saved"), qPrintable(fixture.Notice()));
        QCOMPARE(fixture.dialog.limit->text(), u"35"_s);
        QCOMPARE(QApplication::focusWidget(), fixture.dialog.limit);
        fixture.service->SetAnswer("/settings/Limit?", {});
        fixture.Press(Qt::Key_Return);
        fixture.reader.StepAll();
        QVERIFY(!fixture.dialog.isVisible());
        QCOMPARE(fixture.service->Setting("Limit").value_or(""), std::string("35"));
    }

    void leavingWhileItWritesLosesNothing_data() {
        const Columns<bool, bool> row("byKey", "fails");
        row("Escape", true, false);
        row("close button", false, false);
        row("Escape, and the write fails", true, true);
    }

    void leavingWhileItWritesLosesNothing() {
        const auto [byKey, fails] = Fetched<bool, bool>();
        DialogFixture fixture;
        fixture.Show();
        fixture.reader.StepAll();
        fixture.Type(u"35"_s);
        if (fails)
            fixture.service->SetAnswer("/settings/Limit?", devservice::Answer{500, {}});
        fixture.Press(Qt::Key_Return);
        if (byKey)
            fixture.Press(Qt::Key_Escape);
        else
            fixture.dialog.close();
        QVERIFY2(fixture.dialog.isVisible(), "not before it is known how the write went");
        QVERIFY2(fixture.Notice().contains(u"Still saving"), qPrintable(fixture.Notice()));
        fixture.reader.StepAll();
        QCOMPARE(fixture.Written(), QStringList{u"Limit?ValueType=1&Value=35"_s});
        QCOMPARE(fixture.dialog.isVisible(), fails);
        QCOMPARE(fixture.Notice().contains(u"was not saved: the service did not take it"), fails);
        QCOMPARE(fixture.dialog.limit->text(), u"35"_s);
    }

    void whoWishesTwiceLeavesASilentService() {
        DialogFixture fixture;
        fixture.Show();
        fixture.reader.StepAll();
        fixture.Type(u"35"_s);
        QSignalSpy written(&fixture.dialog, &CBrenDialog::Written);
        fixture.Press(Qt::Key_Return);
        fixture.Press(Qt::Key_Escape);
        fixture.Press(Qt::Key_Escape);
        QVERIFY(!fixture.dialog.isVisible());
        QCOMPARE(written.size(), 1); // whoever shows it reads it again
        fixture.reader.StepAll();
        QCOMPARE(fixture.Written().size(), 1);
    }

    void spaceTwiceOnOkIsNoCancel() {
        DialogFixture fixture;
        fixture.Show();
        fixture.reader.StepAll();
        fixture.Type(u"35"_s);
        fixture.Button(QDialogButtonBox::Ok)->setFocus();
        fixture.Press(Qt::Key_Space);
        fixture.Press(Qt::Key_Space);
        QVERIFY(fixture.dialog.isVisible());
        fixture.reader.StepAll();
        QCOMPARE(fixture.dialog.result(), int(QDialog::Accepted));
    }

    void aFocusThatWasMovedStays() {
        DialogFixture fixture;
        fixture.Show();
        fixture.Button(QDialogButtonBox::Cancel)->setFocus();
        fixture.reader.StepAll();
        QCOMPARE(QApplication::focusWidget(), fixture.Button(QDialogButtonBox::Cancel));
    }

    void badInputIsRefusedWithAWord_data() {
        const Columns<QString, QString, QString> row("limit", "writer", "word");
        row("no number", "", "Ann", "whole number");
        row("too long", "5", QString(70'000, u'x'), "too long");
    }

    void badInputIsRefusedWithAWord() {
        const auto [limit, writer, word] = Fetched<QString, QString, QString>();
        DialogFixture fixture;
        fixture.Show();
        fixture.reader.StepAll();
        fixture.Press(Qt::Key_Delete);
        fixture.Type(limit);
        fixture.dialog.writer->setText(writer);
        fixture.Press(Qt::Key_Return);
        fixture.reader.StepAll();
        QVERIFY(fixture.dialog.isVisible());
        QVERIFY2(fixture.Notice().contains(word), qPrintable(fixture.Notice()));
        QCOMPARE(fixture.Written(), QStringList());
    }

    void theDialogGrowsWithItsText() {
        DialogFixture fixture;
        fixture.service->Stop();
        fixture.Show();
        fixture.dialog.note->setText(QString(u"word "_s).repeated(200));
        fixture.reader.StepAll();
        const auto* notice = fixture.dialog.findChild<NoticeLine*>();
        const auto isWhole = [](const QWidget* text) {
            return text->isVisible() && text->height() >= text->heightForWidth(text->width());
        };
        QTRY_VERIFY(isWhole(notice) && isWhole(fixture.dialog.note));
        fixture.dialog.resize(fixture.dialog.width() - 60, 100);
        QTRY_VERIFY(isWhole(notice) && isWhole(fixture.dialog.note));
    }

    void numbersStepByFive_data() {
        const Columns<int, int, int> row("before", "steps", "after");
        row(0, 1, 5);
        row(5, -1, 0);
        row("never below 0", 3, -1, 0);
        row(8, -1, 3);
        row(7, 1, 12);
        row("never too large", 2147483645, 1, 2147483647);
    }

    void numbersStepByFive() {
        const auto [before, steps] = Fetched<int, int>();
        NumberField field;
        field.SetValue(before);
        QTest::keyClick(&field, steps > 0 ? Qt::Key_Up : Qt::Key_Down);
        QTEST(field.Value().value_or(-1), "after");
        QTest::keyClicks(&field, u"-x."_s);
        QTEST(field.Value().value_or(-1), "after");
    }
};

BTASK_TEST(SettingsDialogTest);
#include "SettingsDialogTest.moc"
