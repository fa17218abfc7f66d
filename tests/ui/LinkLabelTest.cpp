#include "ui/LinkLabel.h"
#include "support/TestMain.h"

#include <QSignalSpy>

class LinkLabelTest : public QObject {
    Q_OBJECT

private slots:
    void parsesSpans_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("plain");
        QTest::addColumn<bool>("takesKeys");
        const auto row = [](const char* text, const char* plain, bool takesKeys) {
            QTest::newRow(text) << QString::fromLatin1(text) << QString::fromLatin1(plain) << takesKeys;
        };
        row("", "", false);
        row("no link", "no link", false);
        row("<a>Next Page</a>", "Next Page", true);
        row("click <A>here</A> or <a>there</a>.", "click here or there.", true);
        row("<a></a>", "", true);
        row("open <a> only", "open <a> only", false);
        row("</a><a>x</a>", "</a>x", true);
        row("<b>&amp;</b> <img src=x>", "<b>&amp;</b> <img src=x>", false);
        row("<a href=\"file:///etc\">x</a>", "<a href=\"file:///etc\">x</a>", false);
    }

    void parsesSpans() {
        QFETCH(QString, text);
        QFETCH(bool, takesKeys);
        const LinkLabel label(text);
        QTEST(label.accessibleName(), "plain");
        QCOMPARE(label.focusPolicy() != Qt::NoFocus, takesKeys);
        QCOMPARE(label.openExternalLinks(), false);
    }

    void isClickedByMouse() {
        LinkLabel label(QStringLiteral("click <a>here</a>"));
        label.show();
        label.resize(label.sizeHint());
        const QSignalSpy clicks(&label, &LinkLabel::LinkClicked);
        QTest::mouseClick(&label, Qt::LeftButton, {}, {2, label.height() / 2});
        QCOMPARE(clicks.count(), 0);
        QTest::mouseClick(&label, Qt::LeftButton, {}, {label.width() - 5, label.height() / 2});
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(clicks.at(0).at(0).toInt(), 0);
    }

    void isClickedByKeyboard() {
        QWidget window;
        auto* before = new QWidget(&window);
        before->setFocusPolicy(Qt::StrongFocus);
        auto* label = new LinkLabel(QStringLiteral("<a>first</a>"), &window);
        label->SetText(QStringLiteral("<a>first</a>, <a>second</a>"));
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        before->setFocus();
        const QSignalSpy clicks(label, &LinkLabel::LinkClicked);
        QTest::keyClick(before, Qt::Key_Tab);
        QVERIFY(label->hasFocus());
        QTest::keyClick(label, Qt::Key_Return);
        QTest::keyClick(label, Qt::Key_Tab);
        QTest::keyClick(label, Qt::Key_Return);
        label->SetText(QStringLiteral("now <a>third</a>"));
        QTest::keyClick(label, Qt::Key_Enter);
        QCOMPARE(clicks.count(), 3);
        for (const auto& [click, span] : {std::pair(0, 0), {1, 1}, {2, 0}})
            QCOMPARE(clicks.at(click).at(0).toInt(), span);
        QTest::keyClick(label, Qt::Key_Tab);
        QVERIFY(before->hasFocus());
    }
};

BTASK_TEST(LinkLabelTest);
#include "LinkLabelTest.moc"
