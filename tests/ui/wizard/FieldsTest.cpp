#include "page/PasswordField.h"
#include "support/ScriptedPrompts.h"
#include "support/SteppingReader.h"
#include "support/TestMain.h"
#include "wizard/CheckList.h"
#include "wizard/CheckTreeView.h"
#include "wizard/Form.h"
#include "wizard/PathField.h"
#include "wizard/TreeFindField.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QTimeEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Neither the last day of a month nor the last hour of a day, from which no key goes on.
template <typename Field>
Field* Midway(Field* field) {
    field->setDateTime(QDateTime(QDate(2025, 6, 15), QTime(12, 30), Qt::UTC));
    return field;
}

} // namespace

class FieldsTest : public QObject {
    Q_OBJECT

private slots:
    void aFormTellsOfEveryChange() {
        ScriptedPrompts prompts;
        Form form;
        auto* choice = new QComboBox;
        choice->addItems({u"Daily"_s, u"Weekly"_s});
        const std::vector<std::pair<QWidget*, Qt::Key>> fields{
            {form.Add(u"&Text"_s, new QLineEdit), Qt::Key_A},
            {form.Add(u"&Password"_s, new PasswordField), Qt::Key_A},
            {form.Add(u"Pa&th"_s, new PathField(prompts, {})), Qt::Key_A},
            {form.Add(u"&Number"_s, new QSpinBox), Qt::Key_Up},
            {form.Add(u"&Choice"_s, choice), Qt::Key_Down},
            {form.Add(u"&Date"_s, Midway(MakeDateField())), Qt::Key_Up},
            {form.Add(u"T&ime"_s, Midway(MakeTimeField())), Qt::Key_Up},
            {form.Add(u"&Box"_s, new QCheckBox), Qt::Key_Space},
            {form.Add(u"&Lines"_s, new QPlainTextEdit), Qt::Key_A}};
        form.show();
        const QSignalSpy edits(&form, &Form::Edited);
        for (const auto& [field, key] : fields) {
            const auto before = edits.count();
            QWidget* typed = field->focusProxy() ? field->focusProxy() : field;
            QVERIFY(!typed->accessibleName().isEmpty());
            QTest::keyClick(typed, key);
            QVERIFY2(edits.count() > before, qPrintable(typed->accessibleName()));
        }
    }

    void aFormSaysWhatIsRequiredAndRemarked() {
        Form form;
        auto* field = form.Add(Form::PlainLabel(u"R&D"_s), new QLineEdit, Form::Need::Required, u"why"_s);
        form.show();
        const auto labels = form.findChildren<QLabel*>();
        QCOMPARE(labels.at(0)->buddy(), field);
        QCOMPARE(field->accessibleName(), u"R&D, required"_s);
        QCOMPARE(field->accessibleDescription(), u"why"_s);
        form.SetRemark(*field, {});
        QVERIFY(field->accessibleDescription().isEmpty());
        form.SetRowShown(*field, false);
        QVERIFY(std::none_of(labels.begin(), labels.end(),
                             [](const QLabel* label) { return label->isVisible(); }));
    }

    void datesAndTimesAreWhole_data() {
        const Columns<QString> row("language");
        for (const char* language : {"en_US", "de_DE", "ja_JP", "he_IL", "C"})
            row(language);
    }

    void datesAndTimesAreWhole() {
        const auto [language] = Fetched<QString>();
        const QLocale before;
        QLocale::setDefault(QLocale(language));
        const std::unique_ptr<QDateEdit> date(MakeDateField());
        const std::unique_ptr<QTimeEdit> time(MakeTimeField());
        QLocale::setDefault(before);
        date->setDate(QDate(1997, 3, 4));
        time->setTime(QTime(21, 5, 7));
        const QLocale locale(language);
        QVERIFY2(date->text().contains(u"1997"_s), qPrintable(date->text()));
        QCOMPARE(locale.toDate(date->text(), date->displayFormat()), QDate(1997, 3, 4));
        QCOMPARE(locale.toTime(time->text(), time->displayFormat()), QTime(21, 5, 7));
    }

    void aPathCanBeTypedAndPicked() {
        ScriptedPrompts prompts;
        prompts.ExpectPick(u"Folder"_s, std::nullopt);
        prompts.ExpectPick(u"Folder"_s, u"/b"_s);
        PathField field(prompts, {PickKind::Folder, u"Folder"_s, {}, {}});
        field.show();
        QTest::keyClicks(field.focusProxy(), u"/a"_s);
        auto* browse = field.findChild<QPushButton*>();
        browse->click();
        QCOMPARE(field.Path(), u"/a"_s);
        browse->click();
        QCOMPARE(field.Path(), u"/b"_s);
    }

    void aListTicksWhatIsSelected() {
        CheckList list(u"Types"_s, {{u"Type"_s, 100}, {u"Extensions"_s, 100}});
        for (const QString& name : {u"a"_s, u"b"_s, u"c"_s})
            list.AddRow({name, u".x"_s}, name == u"b"_s);
        list.show();
        const QSignalSpy edits(&list, &CheckList::Edited);
        list.setCurrentItem(list.topLevelItem(0));
        QTest::keyClick(&list, Qt::Key_Space);
        QCOMPARE(list.TickedRows(), (std::vector<int>{0, 1}));
        QTest::keyClick(&list, Qt::Key_A, Qt::ControlModifier);
        QTest::keyClick(&list, Qt::Key_Return); // some are ticked: all are
        QCOMPARE(list.TickedRows(), (std::vector<int>{0, 1, 2}));
        QTest::keyClick(&list, Qt::Key_Return);
        QVERIFY(list.TickedRows().empty());
        QVERIFY(edits.count() >= 5);
    }

    void findsWhatIsListed() {
        SteppingReader reader;
        QWidget page;
        CheckTreeModel model(reader, page, Lane::Service, nullptr);
        CheckTreeView view(model, &page);
        TreeFindField find(view, u"Find"_s, TreeFindField::Others::Hidden, &page);
        const auto level = [](const QStringList& names) {
            TreeLevel made;
            for (const QString& name : names)
                made.entries.push_back({name, name});
            return made;
        };
        model.SetLevel({}, level({u"Photos"_s, u"Music"_s}));
        model.SetLevel({u"Photos"_s}, level({u"raw"_s, u"old photos"_s}));
        page.show();
        auto* words = find.findChild<QLineEdit*>();
        QTest::keyClicks(words, u"PHOTO"_s);
        const auto present = [&view] { return view.currentIndex().data().toString(); };
        QTRY_VERIFY(!find.IsLooking());
        QCOMPARE(present(), u"Photos"_s);
        QTest::keyClick(words, Qt::Key_Return);
        QCOMPARE(present(), u"old photos"_s);
        QVERIFY(view.isExpanded(model.index(0, 0)));
        QTest::keyClick(words, Qt::Key_Down);
        QCOMPARE(present(), u"Photos"_s);
        model.SetLevel({u"Music"_s}, level({u"photon"_s})); // found too, as soon as it is listed
        QTRY_COMPARE(find.findChild<QLabel*>()->text(), u"1 of 3"_s);
        model.SetLevel({u"Photos"_s}, {}); // what was found has gone
        QTRY_COMPARE(find.findChild<QLabel*>()->text(), u"1 of 2"_s);
        QTest::keyClick(words, Qt::Key_Up);
        QCOMPARE(present(), u"photon"_s);
        // Only what was found is shown, what leads to it and what is below it.
        model.SetLevel({u"Photos"_s}, level({u"raw"_s}));
        QTRY_VERIFY(!find.IsLooking());
        const auto isHidden = [&view](const QModelIndex& index) {
            return view.isRowHidden(index.row(), index.parent());
        };
        const QModelIndex photos = model.index(0, 0);
        const QModelIndex music = model.index(1, 0);
        QVERIFY(!isHidden(photos) && !isHidden(model.index(0, 0, photos)) && !isHidden(music));
        words->setText(u"raw"_s);
        QTRY_VERIFY(isHidden(music));
        QVERIFY(!isHidden(photos) && isHidden(model.index(0, 0, music)));
        QTest::keyClick(words, Qt::Key_Escape);
        QVERIFY(words->text().isEmpty());
        QTRY_VERIFY(!isHidden(music));
    }
};

BTASK_TEST(FieldsTest);
#include "FieldsTest.moc"
