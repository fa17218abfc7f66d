#include "page/SettingsDialog.h"
#include "page/NoticeLine.h"
#include "page/NumberField.h"
#include "page/SettingNews.h"
#include "support/PageBench.h"
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
class SampleDialog : public CSettingsDialog {
public:
    SampleDialog(const ServiceClient& service, Reader& reader)
        : CSettingsDialog(service, reader, u"Sample"_s, nullptr) {
        limit = AddNumber(Limit, u"&Limit (KB/S)"_s);
        writer = AddText(Writer, u"&Writer:"_s);
        on = AddCheck(Switch, u"&Switch"_s);
        note = AddNote(u"A note."_s);
    }

    CNumberField* limit;
    QLineEdit* writer;
    QCheckBox* on;
    QLabel* note;
};

struct DialogBench : PageBench<> {
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
        DialogBench bench;
        bench.service->SetSetting("Limit", "20");
        bench.service->SetSetting("Writer", "Ann");
        QSignalSpy written(&bench.dialog, &CBrenDialog::Written);
        bench.Show();
        QVERIFY(!bench.IsReady());
        bench.reader.StepAll();
        QVERIFY(bench.IsReady());
        QCOMPARE(QApplication::focusWidget(), bench.dialog.limit);
        bench.Type(u"35"_s); // over what was read, which is selected
        bench.Press(Qt::Key_Tab);
        QCOMPARE(QApplication::focusWidget(), bench.dialog.writer);
        QCOMPARE(bench.dialog.writer->text(), u"Ann"_s);
        bench.Press(Qt::Key_Tab);
        bench.Press(Qt::Key_Space);
        bench.Press(Qt::Key_Return);
        QVERIFY2(bench.dialog.isVisible(), "not before the service has answered");
        bench.reader.StepAll();
        QVERIFY(!bench.dialog.isVisible());
        QCOMPARE(bench.dialog.result(), int(QDialog::Accepted));
        QCOMPARE(bench.Written(),
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
        DialogBench bench;
        bench.Show();
        bench.reader.StepAll();
        if (key == Qt::Key_Escape)
            bench.Type(u"35"_s);
        bench.Press(key);
        bench.reader.StepAll();
        QVERIFY(!bench.dialog.isVisible());
        QCOMPARE(bench.dialog.result(), result);
        QCOMPARE(bench.Written(), QStringList());
    }

    void nothingIsTakenBeforeAllIsRead_data() {
        const Columns<QString> row("fault");
        row("refuse");
        row("status:500@Switch");
        row("fin@Writer");
    }

    void nothingIsTakenBeforeAllIsRead() {
        QFETCH(QString, fault);
        DialogBench bench;
        bench.service->SetSetting("Limit", "20");
        bench.service->SetSetting("Writer", "Ann Writer");
        QVERIFY(bench.service->SetFault(fault.toStdString()));
        bench.Show();
        bench.reader.StepAll();
        QVERIFY(!bench.IsReady());
        QVERIFY(bench.Notice().contains(u"does not answer"));
        bench.Press(Qt::Key_Return);
        bench.reader.StepAll();
        QVERIFY(bench.dialog.isVisible());
        QCOMPARE(bench.Written(), QStringList());

        bench.service->ClearFaults();
        QTRY_VERIFY((bench.reader.StepAll(), bench.IsReady()));
        QCOMPARE(bench.Notice(), QString());
        QCOMPARE(bench.dialog.limit->text(), u"20"_s);
    }

    void aFailedWriteKeepsWhatWasTyped() {
        DialogBench bench;
        bench.Show();
        bench.reader.StepAll();
        bench.Type(u"35"_s);
        bench.service->SetAnswer("/settings/Limit?", devservice::Answer{500, {}});
        bench.Press(Qt::Key_Return);
        QVERIFY(!bench.IsReady());
        bench.Press(Qt::Key_Return);
        bench.Press(Qt::Key_Space);
        bench.reader.StepAll();
        QCOMPARE(bench.Written().size(), 1);
        QVERIFY(bench.dialog.isVisible() && bench.IsReady());
        QVERIFY2(bench.Notice().contains(u"\"Limit (KB/S)\" was not saved"), qPrintable(bench.Notice()));
        QCOMPARE(bench.dialog.limit->text(), u"35"_s);
        QCOMPARE(QApplication::focusWidget(), bench.dialog.limit);
        bench.service->SetAnswer("/settings/Limit?", {});
        bench.Press(Qt::Key_Return);
        bench.reader.StepAll();
        QVERIFY(!bench.dialog.isVisible());
        QCOMPARE(bench.service->Setting("Limit").value_or(""), std::string("35"));
    }

    void spaceTwiceOnOkIsNoCancel() {
        DialogBench bench;
        bench.Show();
        bench.reader.StepAll();
        bench.Type(u"35"_s);
        bench.Button(QDialogButtonBox::Ok)->setFocus();
        bench.Press(Qt::Key_Space);
        bench.Press(Qt::Key_Space);
        QVERIFY(bench.dialog.isVisible());
        bench.reader.StepAll();
        QCOMPARE(bench.dialog.result(), int(QDialog::Accepted));
    }

    void aFocusThatWasMovedStays() {
        DialogBench bench;
        bench.Show();
        bench.Button(QDialogButtonBox::Cancel)->setFocus();
        bench.reader.StepAll();
        QCOMPARE(QApplication::focusWidget(), bench.Button(QDialogButtonBox::Cancel));
    }

    void badInputIsRefusedWithAWord_data() {
        const Columns<QString, QString, QString> row("limit", "writer", "word");
        row("no number", "", "Ann", "whole number");
        row("too long", "5", QString(70'000, u'x'), "too long");
    }

    void badInputIsRefusedWithAWord() {
        const auto [limit, writer, word] = Fetched<QString, QString, QString>();
        DialogBench bench;
        bench.Show();
        bench.reader.StepAll();
        bench.Press(Qt::Key_Delete);
        bench.Type(limit);
        bench.dialog.writer->setText(writer);
        bench.Press(Qt::Key_Return);
        bench.reader.StepAll();
        QVERIFY(bench.dialog.isVisible());
        QVERIFY2(bench.Notice().contains(word), qPrintable(bench.Notice()));
        QCOMPARE(bench.Written(), QStringList());
    }

    void theDialogGrowsWithItsText() {
        DialogBench bench;
        bench.service->Stop();
        bench.Show();
        bench.dialog.note->setText(QString(u"word "_s).repeated(200));
        bench.reader.StepAll();
        const auto* notice = bench.dialog.findChild<NoticeLine*>();
        const auto isWhole = [](const QWidget* text) {
            return text->isVisible() && text->height() >= text->heightForWidth(text->width());
        };
        QTRY_VERIFY(isWhole(notice) && isWhole(bench.dialog.note));
        bench.dialog.resize(bench.dialog.width() - 60, 100);
        QTRY_VERIFY(isWhole(notice) && isWhole(bench.dialog.note));
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
        CNumberField field;
        field.SetValue(before);
        QTest::keyClick(&field, steps > 0 ? Qt::Key_Up : Qt::Key_Down);
        QTEST(field.Value().value_or(-1), "after");
        QTest::keyClicks(&field, u"-x."_s);
        QTEST(field.Value().value_or(-1), "after");
    }
};

BTASK_TEST(SettingsDialogTest);
#include "SettingsDialogTest.moc"
