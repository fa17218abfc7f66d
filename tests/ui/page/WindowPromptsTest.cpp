#include "page/WindowPrompts.h"
#include "lanes/ProgressNote.h"
#include "support/TestMain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QToolButton>

#include <thread>

using namespace Qt::Literals::StringLiterals;

class WindowPromptsTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_window = std::make_unique<QWidget>();
        m_asker = new QWidget(m_window.get());
        m_window->setWindowTitle(u"Console"_s);
        m_window->show();
    }

    void asksYesOrNo_data() {
        const Columns<int, int, bool, bool> row("button", "key", "destroys", "yes");
        row("yes", QMessageBox::Yes, 0, true, true);
        row("no", QMessageBox::No, 0, true, false);
        row("escape", 0, Qt::Key_Escape, false, false);
        row("enter", 0, Qt::Key_Return, true, false);
        row("enter, nothing is lost", 0, Qt::Key_Return, false, true);
        row("close", 0, 0, false, false);
    }

    void asksYesOrNo() {
        const auto [button, key, destroys] = Fetched<int, int, bool>();
        std::optional<bool> answer;
        const Question question{u"Really?"_s, {}, u"Dismount"_s, u"Dismount it"_s, u"Keep it"_s, destroys};
        m_prompts.Ask(m_asker, question, [&answer](bool yes) { answer = yes; });
        QVERIFY(!answer);
        QPointer<QMessageBox> box = Opened<QMessageBox>();
        QVERIFY(box && box->isVisible());
        QCOMPARE(box->windowModality(), Qt::WindowModal);
        QCOMPARE(box->windowTitle(), u"Dismount"_s);
        QCOMPARE(box->button(QMessageBox::Yes)->text(), u"Dismount it"_s);
        if (button != 0)
            box->button(static_cast<QMessageBox::StandardButton>(button))->click();
        else if (key != 0)
            QTest::keyClick(box, static_cast<Qt::Key>(key));
        else
            box->close();
        QVERIFY(answer);
        QTEST(*answer, "yes");
        QTRY_VERIFY(!box);
    }

    void aButtonBesideTheAnswersLeavesTheQuestionOpen() {
        int looked = 0;
        std::optional<bool> answer;
        m_prompts.Ask(
            m_asker, {.text = u"Really?"_s, .beside = u"Open Folder"_s, .besideRun = [&looked] { ++looked; }},
            [&answer](bool yes) { answer = yes; });
        QPointer<QMessageBox> box = Opened<QMessageBox>();
        for (QAbstractButton* button : box->buttons())
            if (button->text() == "Open Folder"_L1) {
                button->click();
                button->click();
            }
        QCOMPARE(looked, 2);
        QVERIFY(box->isVisible() && !answer);
        QTest::keyClick(box, Qt::Key_Return);
        QCOMPARE(answer, std::optional(false));
    }

    void asksForATextUntilItCanBeTaken() {
        for (const bool secret : {false, true}) {
            QStringList answers;
            const auto refuse = [](const QString& text) {
                return text.contains(u'/') ? u"No \"/\", please."_s : QString();
            };
            m_prompts.AskText(m_asker, {u"New"_s, u"Name"_s, u"new folder"_s, secret, refuse},
                              [&answers](const std::optional<QString>& text) {
                                  answers.append(text.value_or(u"(none)"_s));
                              });
            QPointer<QDialog> dialog = Opened<QDialog>();
            auto* edit = dialog->findChild<QLineEdit*>();
            QCOMPARE(edit->selectedText(), u"new folder"_s);
            QCOMPARE(edit->echoMode(), secret ? QLineEdit::Password : QLineEdit::Normal);
            if (secret)
                dialog->findChild<QToolButton*>()->click();
            QCOMPARE(edit->echoMode(), QLineEdit::Normal);
            QTest::keyClicks(edit, u"a/b"_s);
            QTest::keyClick(edit, Qt::Key_Return);
            QVERIFY(answers.isEmpty() && dialog->isVisible());
            QTest::keyClicks(edit, u"a b"_s); // what was refused is selected
            QTest::keyClick(edit, Qt::Key_Return);
            QTRY_VERIFY(!dialog);
            m_prompts.AskText(m_asker, {{}, u"Name"_s}, [&answers](const std::optional<QString>& text) {
                answers.append(text.value_or(u"(none)"_s));
            });
            QTest::keyClick(Opened<QDialog>(), Qt::Key_Escape);
            QCOMPARE(answers, QStringList({u"a b"_s, u"(none)"_s}));
            QTRY_VERIFY(!Opened<QDialog>());
        }
    }

    void showsAnOperationUntilItEnds_data() {
        const Columns<QString, int, int, bool> row("how", "cancels", "leaves", "stands");
        row("ends", 0, 0, false);
        row("cancel", 1, 0, true);
        row("escape twice", 1, 0, true);
        row("background", 0, 1, false);
        row("asker dies", 0, 0, false);
    }

    void showsAnOperationUntilItEnds() {
        const auto [how] = Fetched<QString>();
        int cancels = 0;
        int leaves = 0;
        OperationRequest request;
        request.text = u"Counting"_s;
        request.progress = std::make_shared<ProgressNote>();
        request.cancel = [&cancels] { ++cancels; };
        request.leave = [&leaves] { ++leaves; };
        std::shared_ptr<void> shown = m_prompts.ShowOperation(m_asker, request);
        QPointer<QDialog> box = Opened<QDialog>();
        auto* bar = box->findChild<QProgressBar*>();
        QCOMPARE(bar->maximum(), 0);
        std::thread([note = request.progress] { note->Tell({1, 4, u"/home"_s}); }).join();
        QTRY_COMPARE(bar->value() * 4, bar->maximum());
        const QList<QPushButton*> buttons = box->findChildren<QPushButton*>();
        if (how == u"ends"_s)
            shown.reset();
        else if (how == u"cancel"_s)
            buttons.at(1)->click();
        else if (how == u"background"_s)
            buttons.at(0)->click();
        else if (how == u"asker dies"_s)
            delete m_asker;
        else
            for (int time = 0; time < 2; ++time)
                QTest::keyClick(box, Qt::Key_Escape);
        QTEST(cancels, "cancels");
        QTEST(leaves, "leaves");
        QTEST(box && box->isVisible(), "stands");
        shown.reset();
        QTRY_VERIFY(!box);
    }

    void showsDataAsPlainText() {
        bool closed = false;
        const QString text = u"Delete <b>\"A & B\"</b>?\n"_s;
        m_prompts.ShowMessage(
            m_asker, text, [&closed] { closed = true; }, u"<i>why</i>"_s);
        auto* box = Opened<QMessageBox>();
        QCOMPARE(box->windowTitle(), u"Console"_s);
        QCOMPARE(box->text(), text);
        QCOMPARE(box->textFormat(), Qt::PlainText);
        QCOMPARE(box->detailedText(), u"<i>why</i>"_s);
        QVERIFY(!closed);
        box->button(QMessageBox::Ok)->click();
        QVERIFY(closed);
        m_prompts.ShowMessage(nullptr, text);
        QTRY_VERIFY(QApplication::activeModalWidget() != nullptr);
        QApplication::activeModalWidget()->close();
    }

    void anAskerThatIsGoneHearsNothing() {
        bool heard = false;
        m_prompts.AskYesNo(m_asker, u"Really?"_s, [&heard](bool) { heard = true; });
        delete m_asker;
        Opened<QMessageBox>()->button(QMessageBox::Yes)->click();
        m_prompts.AskYesNo(m_window.get(), u"Really?"_s, [&heard](bool) { heard = true; });
        m_window.reset();
        QVERIFY(!heard);
    }

    void picksPaths() {
        QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
        const QTemporaryDir folder;
        std::optional<QString> picked;
        int answers = 0;
        const auto answer = [&](std::optional<QString> path) {
            picked = std::move(path);
            ++answers;
        };
        m_prompts.PickPath(m_asker, {PickKind::Folder, u"Folder"_s, folder.path(), {}}, answer);
        Opened<QFileDialog>()->selectFile(folder.path());
        static_cast<QDialog*>(Opened<QFileDialog>())->accept();
        QCOMPARE(answers, 1);
        QCOMPARE(picked, folder.path());
        QTRY_VERIFY(!Opened<QFileDialog>());

        // The picker itself adds the suffix, so that it asks about a file that is there already.
        m_prompts.PickPath(m_asker, {PickKind::FileToSave, u"Save"_s, folder.path(), {}, u"csv"_s}, answer);
        QCOMPARE(Opened<QFileDialog>()->defaultSuffix(), u"csv"_s);
        Opened<QFileDialog>()->reject();
        QCOMPARE(answers, 2);
        QVERIFY(!picked);
    }

    void writesTheClipboard() {
        m_prompts.SetClipboardText(u"a\tb"_s);
        QCOMPARE(QApplication::clipboard()->text(), u"a\tb"_s);
    }

private:
    template <typename Dialog>
    Dialog* Opened() const {
        return m_window->findChild<Dialog*>();
    }

    std::unique_ptr<QWidget> m_window;
    QWidget* m_asker = nullptr;
    WindowPrompts m_prompts;
};

BTASK_TEST(WindowPromptsTest);
#include "WindowPromptsTest.moc"
