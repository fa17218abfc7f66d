#include "page/WindowPrompts.h"
#include "support/TestMain.h"

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QMessageBox>
#include <QTemporaryDir>

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
        const Columns<int, int, bool> row("button", "key", "yes");
        row("yes", QMessageBox::Yes, 0, true);
        row("no", QMessageBox::No, 0, false);
        row("escape", 0, Qt::Key_Escape, false);
        row("enter", 0, Qt::Key_Return, false);
        row("close", 0, 0, false);
    }

    void asksYesOrNo() {
        const auto [button, key] = Fetched<int, int>();
        std::optional<bool> answer;
        m_prompts.AskYesNo(m_asker, u"Really?"_s, [&answer](bool yes) { answer = yes; });
        QVERIFY(!answer);
        QPointer<QMessageBox> box = Opened<QMessageBox>();
        QVERIFY(box && box->isVisible());
        QCOMPARE(box->windowModality(), Qt::WindowModal);
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

        m_prompts.PickPath(m_asker, {PickKind::FileToSave, u"Save"_s, folder.filePath(u"a.csv"_s), {}},
                           answer);
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
