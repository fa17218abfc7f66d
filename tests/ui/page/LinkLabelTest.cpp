#include "page/LinkLabel.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QSignalSpy>

using namespace Qt::Literals::StringLiterals;

class LinkLabelTest : public QObject {
    Q_OBJECT

private slots:
    void parsesSpans_data() {
        const Columns<QString, QString, bool> row("text", "plain", "takesKeys");
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
        const auto [text, plain, takesKeys] = Fetched<QString, QString, bool>();
        const LinkLabel label(text);
        QCOMPARE(label.accessibleName(), plain);
        QCOMPARE(label.focusPolicy() != Qt::NoFocus, takesKeys);
        QCOMPARE(label.openExternalLinks(), false);
    }

    void isClickedByMouse() {
        LinkLabel label(u"click <a>here</a>"_s);
        label.show();
        label.resize(label.sizeHint());
        const QSignalSpy clicks(&label, &LinkLabel::LinkClicked);
        QTest::mouseClick(&label, Qt::LeftButton, {}, {2, label.height() / 2});
        QCOMPARE(clicks.count(), 0);
        QTest::mouseClick(&label, Qt::LeftButton, {}, {label.width() - 5, label.height() / 2});
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(clicks.at(0).at(0).toInt(), 0);
    }

    void isALinkToScreenReaders() {
        LinkLabel label(u"click <a>here</a> or <a>there</a>"_s);
        const QSignalSpy clicks(&label, &LinkLabel::LinkClicked);
        QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(&label);
        QCOMPARE(heard->text(QAccessible::Name), u"click here or there"_s);
        QCOMPARE(heard->childCount(), 2);
        QAccessibleInterface* there = heard->child(1);
        QCOMPARE(there->role(), QAccessible::Link);
        QCOMPARE(there->text(QAccessible::Name), u"there"_s);
        QCOMPARE(heard->indexOfChild(there), 1);
        there->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
        QCOMPARE(clicks.count(), 1);
        QCOMPARE(clicks.at(0).at(0).toInt(), 1);
        label.SetText(u"nothing"_s);
        QCOMPARE(heard->childCount(), 0);
        QVERIFY(!there->isValid());
    }

    void isClickedByKeyboard() {
        QWidget window;
        auto* before = new QWidget(&window);
        before->setFocusPolicy(Qt::StrongFocus);
        auto* label = new LinkLabel(u"<a>first</a>"_s, &window);
        label->SetText(u"<a>first</a>, <a>second</a>"_s);
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        before->setFocus();
        const QSignalSpy clicks(label, &LinkLabel::LinkClicked);
        QTest::keyClick(before, Qt::Key_Tab);
        QVERIFY(label->hasFocus());
        QTest::keyClick(label, Qt::Key_Return);
        QTest::keyClick(label, Qt::Key_Tab);
        QTest::keyClick(label, Qt::Key_Return);
        label->SetText(u"now <a>third</a>"_s);
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
