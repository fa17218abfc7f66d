// Labels: threads
#include "backup/FilterDialog.h"
#include "backup/CountView.h"
#include "lanes/ThreadReader.h"
#include "page/NoticeLine.h"
#include "support/PageFixture.h"
#include "support/TestMain.h"
#include "wizard/CheckList.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace {

template <typename Widget>
Widget* Named(const QWidget& window, const QString& text) {
    for (Widget* widget : window.findChildren<Widget*>())
        if (QString(widget->property("text").toString()).remove(u'&') == text ||
            QString(widget->accessibleName()).remove(u'&') == text)
            return widget;
    return nullptr;
}

/// The five lines as they are sent, a line each.
QString Sent(const FilterChoice& choice) {
    return FilterLines(FilterOf(choice)).replace(u'\n', u'|');
}

} // namespace

class FilterDialogTest : public QObject {
    Q_OBJECT

private slots:
    void sendsTheUsualUntouched() {
        QCOMPARE(Sent({}), u"*|.tmp|thumbs.db;desktop.ini;picasa.ini;|NoSys|NoHidden"_s);
        QCOMPARE(Sent(FilterDialog({}, {}).Choice()), Sent({}));
    }

    void sendsWhatIsTicked_data() {
        const Columns<QString, QString> row("keys", "sent");
        const QString rest = u"|.tmp|thumbs.db;desktop.ini;picasa.ini;|NoSys|NoHidden"_s;
        row("toggle 2", u"*"_s + rest);
        row("toggle 0, toggle 2", u".jpg, .bmp, .gif, .png, .psd, .tif"_s + rest);
        row("toggle 0, toggle 4, toggle 3",
            u".avi, .asf, .mov, .mpg, .mp3, .mid, .ra, .wav, .aif, .iff, .m3u, .mpa, .ram"_s + rest);
        row("box Exclude file types:", "*|*|thumbs.db;desktop.ini;picasa.ini;|NoSys|NoHidden");
        row("text Exclude file types:", "*|*|thumbs.db;desktop.ini;picasa.ini;|NoSys|NoHidden");
        row("box Exclude files:, box Skip system files", "*|.tmp|*|Sys|NoHidden");
        row("text Exclude files:, box Skip hidden files", "*|.tmp|*|NoSys|Hidden");
    }

    void sendsWhatIsTicked() {
        const auto [keys] = Fetched<QString>();
        FilterDialog dialog({}, {});
        dialog.show();
        for (const QString& key : keys.split(u", "_s)) {
            const QString name = key.section(u' ', 1);
            if (key.startsWith(u"toggle"_s)) {
                auto* list = dialog.findChild<CheckList*>();
                list->setCurrentItem(list->topLevelItem(name.toInt()));
                QTest::keyClick(list, Qt::Key_Space);
            } else if (key.startsWith(u"box"_s)) {
                QTest::keyClick(Named<QCheckBox>(dialog, name), Qt::Key_Space);
            } else {
                Named<QLineEdit>(dialog, name)->clear();
            }
        }
        dialog.accept();
        QVERIFY(!dialog.isVisible());
        QTEST(Sent(dialog.Choice()), "sent");
        QCOMPARE(FilterDialog(dialog.Choice(), {}).Choice(), dialog.Choice());
    }

    void addsARowOfTypes() {
        FilterDialog dialog({}, {});
        dialog.show();
        const auto add = [&dialog](const QString& name, const QString& types) {
            QTest::mouseClick(Named<QPushButton>(dialog, u"Add File Type..."_s), Qt::LeftButton);
            auto* adding = dialog.findChild<CAddFileType*>();
            const auto lines = adding->findChildren<QLineEdit*>();
            QTest::keyClicks(lines.at(0), name);
            QTest::keyClicks(lines.at(1), types);
            QTest::keyClick(adding, Qt::Key_Return);
            const bool taken = !adding->isVisible();
            adding->reject();
            delete adding;
            return taken;
        };
        QVERIFY(!add(u"Only a name"_s, {}));
        QVERIFY(!add({}, u".x"_s));
        QCOMPARE(dialog.Choice().rows.size(), 5U);
        QVERIFY(add(u"Mine"_s, u".me, .my"_s));
        const FileTypeRow added{u"Mine"_s, u".me, .my"_s, true};
        QCOMPARE(dialog.Choice().rows.back(), added);
        dialog.findChild<CheckList*>()->SetTicked(0, false);
        QCOMPARE(FilterOf(dialog.Choice()).types, u".me, .my"_s);
    }

    void staysWithWhatCannotBeSent() {
        FilterDialog dialog({}, {});
        dialog.show();
        auto* types = dialog.findChild<CheckList*>();
        types->SetTicked(0, false);
        dialog.accept();
        QCOMPARE(dialog.findChild<NoticeLine*>()->Text(),
                 u"Please select at least one file type to backup."_s);
        types->SetTicked(0, true);
        auto* files = Named<QLineEdit>(dialog, u"Exclude files:"_s);
        files->setText(u"a\tb"_s);
        dialog.accept();
        QCOMPARE(dialog.findChild<NoticeLine*>()->Text(), u"A tab cannot be sent. Please take it out."_s);
        QCOMPARE(dialog.focusWidget(), files);
        QVERIFY(dialog.isVisible());
    }

    void countsWhileItIsShown() {
        PageFixture<> fixture;
        fixture.service->SetAnswer(
            "/resources/home/quota",
            devservice::Answer{207, "<used-bytes>24</x><allocated-bytes>2147483648</x>"});
        const QTemporaryDir dir;
        for (const char* name : {"a.txt", "b.tmp", ".hidden"}) {
            QFile file(dir.filePath(QString::fromLatin1(name)));
            QVERIFY(file.open(QFile::WriteOnly) && file.write("0123456789") == 10);
        }
        BackupDraft draft;
        draft.sources = {dir.path()};
        QWidget page;
        CountView view(fixture.console, &page);
        view.Count(draft);
        QVERIFY(!fixture.reader.Work(Lane::Apart)); // not before it is seen
        page.show();
        const auto labels = view.findChildren<QLabel*>();
        QCOMPARE(labels.first()->text(), u"0 files, 0 bytes so far"_s);
        page.hide();
        fixture.reader.StepAll();
        QVERIFY(!view.Figures().isWhole);
        page.show();
        fixture.reader.StepAll();
        QCOMPARE(labels.first()->text(), u"1 file, 10 bytes"_s);
        QCOMPARE(labels.at(1)->text(), u"\u00B7 2.0 GB free in the account"_s);
        const QString details = view.findChild<QPlainTextEdit*>()->toPlainText();
        for (const QString& line :
             {u"Hidden files: leaves out 1 file, 10 bytes"_s, u"System files: leaves out nothing"_s,
              u"Large folder: %1 (1 file, 10 bytes)"_s.arg(dir.path())})
            QVERIFY2(details.split(u'\n').contains(line), qPrintable(details));
        view.Count(draft);
        QVERIFY(!fixture.reader.Work(Lane::Apart)); // known

        std::optional<FilterChoice> accepted;
        OpenFilterDialog(&page, {}, &view, [&accepted](const FilterChoice& choice) { accepted = choice; });
        auto* dialog = page.findChild<FilterDialog*>();
        QVERIFY(Named<QLabel>(*dialog, u"leaves out nothing"_s));
        QTest::keyClick(Named<QCheckBox>(*dialog, u"Skip hidden files"_s), Qt::Key_Space);
        dialog->accept();
        QVERIFY(accepted);
        draft.filter = FilterOf(*accepted);
        view.Count(draft);
        fixture.reader.StepAll();
        QCOMPARE(labels.first()->text(), u"2 files, 20 bytes"_s);
    }
};

BTASK_TEST(FilterDialogTest);
#include "FilterDialogTest.moc"
