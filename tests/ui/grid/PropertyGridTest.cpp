#include "grid/BrenPropertyGrid.h"
#include "grid/DynamicCombo.h"
#include "grid/DynamicEdit.h"
#include "page/NoticeLine.h"
#include "support/ScriptedPrompts.h"
#include "support/TestMain.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QApplication>
#include <QDir>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A window with a grid and a field that can take the focus away.
class GridWindow : public QWidget {
public:
    GridWindow() : grid(prompts), elsewhere(new QLineEdit) {
        auto* layout = new QVBoxLayout(this);
        layout->addWidget(&grid);
        layout->addWidget(elsewhere);
        resize(760, 400);
        QObject::connect(&grid, &CBrenPropertyGrid::ValueCommitted, this,
                         [this](int row, CPropertyGroup* group, const PropertyRow& committed) {
                             commits.append(u"%1/%2 %3=%4"_s.arg(group->GetRow(0)->label)
                                                .arg(row)
                                                .arg(committed.key, committed.value));
                         });
    }

    CPropertyGroup* AddGroup(const QString& title, const std::vector<PropertyRow>& rows) {
        CPropertyGroup* group = grid.AddGroup(title);
        for (const PropertyRow& row : rows)
            group->AddRow(row);
        return group;
    }

    void Present() {
        show();
        activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(this));
    }

    CPropertyGroup* Present(const std::vector<PropertyRow>& rows) {
        CPropertyGroup* group = AddGroup(u"G"_s, rows);
        Present();
        return group;
    }

    /// The line beside an editor.
    QString Note() const {
        const auto* note = findChild<NoticeLine*>();
        return note && note->isVisible() ? note->Text() : QString();
    }

    ScriptedPrompts prompts;
    CBrenPropertyGrid grid;
    QLineEdit* elsewhere;
    QStringList commits;
};

PropertyRow Row(const QString& value, PropertyType type = PropertyType::Text, const QString& label = u"L"_s) {
    return {label, value, u"K"_s, type, {}, false};
}

void ClickValue(CPropertyGroup& group, int row, int column = PropertyModel::Value) {
    const QModelIndex index = group.model()->index(row, column);
    QTest::mouseClick(group.viewport(), Qt::LeftButton, {}, group.visualRect(index).center());
}

} // namespace

class PropertyGridTest : public QObject {
    Q_OBJECT

private slots:
    void editorsCommit_data() {
        const Columns<PropertyType, QString, QString, QString, QString> row("type", "before", "entered",
                                                                            "end", "after");

        row("enter", PropertyType::Text, "old", "new", "enter", "new");
        row("focus lost", PropertyType::Text, "old", "new", "leave", "new");
        row("escape", PropertyType::Text, "old", "new", "escape", {});
        row("untouched", PropertyType::Text, "old", "old", "leave", {});
        row("other case only", PropertyType::Text, "old", "OLD", "enter", {});
        row("emptied", PropertyType::Text, "old", "", "enter", "");
        row("filled", PropertyType::Text, "", "new", "enter", "new");
        row("number", PropertyType::Integer, "5", "50", "enter", "50");
        row("same number", PropertyType::Integer, "5", "5", "leave", {});
        row("number emptied", PropertyType::Integer, "5", "", "leave", {});
        row("boolean", PropertyType::Boolean, "True", "False", "enter", "False");
        row("boolean left", PropertyType::Boolean, "False", "True", "leave", "True");
        row("same boolean", PropertyType::Boolean, "True", "True", "enter", {});
        row("boolean of other case", PropertyType::Boolean, "true", "True", "leave", {});
        row("boolean cancelled", PropertyType::Boolean, "True", "False", "escape", {});
    }

    void editorsCommit() {
        const auto [type, before, entered, end, after] =
            Fetched<PropertyType, QString, QString, QString, QString>();
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(before, type)});
        ClickValue(*group, 1);
        QWidget* editor = group->Editor();
        QVERIFY(editor && editor->hasFocus());
        QCOMPARE(group->EditedRow(), 1);

        if (auto* edit = qobject_cast<CDynamicEdit*>(editor))
            edit->selectAll();
        QTest::keyClick(editor, Qt::Key_Delete);
        QTest::keyClicks(editor, type == PropertyType::Boolean ? entered.left(1) : entered);
        if (end == "leave"_L1)
            window.elsewhere->setFocus();
        else
            QTest::keyClick(editor, end == "enter"_L1 ? Qt::Key_Return : Qt::Key_Escape);

        QVERIFY(!group->Editor());
        QCOMPARE(group->EditedRow(), -1);
        QVERIFY2(window.commits.isEmpty(), "a commit is told later");
        QCoreApplication::processEvents();
        QCOMPARE(group->GetRow(1)->value, after.isNull() ? before : after);
        QCOMPARE(window.commits, after.isNull() ? QStringList() : QStringList{u"G/1 K="_s + after});
    }

    void valuesOpenTheirEditor_data() {
        const Columns<PropertyType, QString, QString> row("type", "value", "editor");
        row("boolean", PropertyType::Boolean, "False", "combo False");
        row("boolean ignoring case", PropertyType::Boolean, "tRUE", "combo True");
        row("neither true nor false", PropertyType::Boolean, "1", "combo ");
        row("boolean like a path", PropertyType::Boolean, "C:\\", "combo ");
        row("text", PropertyType::Text, "a text", "edit a text");
        row("colon elsewhere", PropertyType::Text, "CC:\\", "edit CC:\\");
        row("colon alone", PropertyType::Text, "C:/", "edit C:/");
        row("number", PropertyType::Integer, "-7", "edit -7");
        row("no number", PropertyType::Integer, "many", "edit many");
    }

    void valuesOpenTheirEditor() {
        const auto [type, value] = Fetched<PropertyType, QString>();
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(value, type)});
        QVERIFY(group->OpenEditor(1));
        const auto* combo = qobject_cast<CDynamicCombo*>(group->Editor());
        const auto* edit = qobject_cast<CDynamicEdit*>(group->Editor());
        QTEST(combo ? u"combo "_s + combo->currentText() : u"edit "_s + edit->text(), "editor");
        window.elsewhere->setFocus();
        QCoreApplication::processEvents();
        QCOMPARE(group->GetRow(1)->value, value);
        QCOMPARE(window.commits, QStringList());
    }

    void foldersAreChosenOrTyped_data() {
        const Columns<QString, QString, QString, QString> row("value", "hand", "typed", "after");
        row("drive, chosen", "C:\\Data", "pick D:\\More", {}, "D:\\More");
        row("drive, the same", "C:\\Data", "pick c:\\data", {}, {});
        row("drive, cancelled", "C:\\Data", "pick", {}, {});
        row("drive, cancelled and typed", "C:\\Data", "pick", "plain text", "plain text");
        row("drive, key and typed", "C:\\Data", "F2", "D:\\Other", "D:\\Other");
        row("drive, typed at once", "C:\\Data", "type", "xyz", "xyz");
        row("absolute, typed", "/srv/a", "click", "/etc is no folder of ours", "/etc is no folder of ours");
        if (QDir::isAbsolutePath(u"/srv/a"_s))
            row("absolute, chosen", "/srv/a", "button /srv/b", {}, "/srv/b");
    }

    void foldersAreChosenOrTyped() {
        const auto [value, hand, typed, after] = Fetched<QString, QString, QString, QString>();
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(value, PropertyType::Text, u"Cache folder"_s)});
        const QString picked = hand.section(u' ', 1);
        if (hand.startsWith(u"pick") || hand.startsWith(u"button"))
            window.prompts.ExpectPick(u"Cache folder"_s,
                                      picked.isEmpty() ? std::nullopt : std::optional(picked));
        group->setFocus();
        if (hand == "F2"_L1)
            QTest::keyClick(group, Qt::Key_F2);
        else if (hand == "type"_L1)
            QTest::keyClick(group, typed.front().toLatin1());
        else
            ClickValue(*group, 1);
        if (hand.startsWith(u"button"))
            group->Editor()->actions().constFirst()->trigger();
        QCOMPARE(!group->Editor(), !picked.isEmpty());
        if (!typed.isEmpty()) {
            QTest::keyClicks(group->Editor(), hand == "type"_L1 ? typed.mid(1) : typed);
            QTest::keyClick(group->Editor(), Qt::Key_Return);
        }
        window.elsewhere->setFocus();
        QCoreApplication::processEvents();
        QCOMPARE(window.commits, after.isEmpty() ? QStringList() : QStringList{u"G/1 K="_s + after});
    }

    void aFolderDialogLeavesTheEditorOpen() {
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(u"C:\\Data"_s)});
        window.prompts.Hold();
        window.prompts.ExpectPick(u"L"_s, u"D:\\"_s);
        ClickValue(*group, 1);
        window.elsewhere->setFocus(); // as a dialog in front takes it
        QVERIFY(group->Editor());
        window.prompts.Release();
        QCoreApplication::processEvents();
        QCOMPARE(window.commits, QStringList{u"G/1 K=D:\\"_s});
    }

    void onlyIntegersAreTaken_data() {
        const Columns<QString, QString> row("typed", "value");
        row("largest", "2147483647", "2147483647");
        row("smallest", "-2147483648", "-2147483648");
        row("leading zeros", "007", "7");
        row("a digit too many", "21474836470", {});
        row("letters", "1a2b", {});
        row("point and group", "1.0,0", {});
        row("sign alone", "-", {});
        row("nothing", "", {});
    }

    void onlyIntegersAreTaken() {
        const auto [typed, value] = Fetched<QString, QString>();
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(u"5"_s, PropertyType::Integer)});
        ClickValue(*group, 1);
        QTest::keyClick(group->Editor(), Qt::Key_Backspace);
        QTest::keyClicks(group->Editor(), typed);
        QTest::keyClick(group->Editor(), Qt::Key_Enter);
        QCOMPARE(window.Note().contains(u"whole number"), value.isEmpty());
        QCOMPARE(group->Editor() != nullptr, value.isEmpty());
        window.elsewhere->setFocus();
        QVERIFY2(value.isEmpty() == window.Note().contains(u'"'), "what was refused stays told");
        QCOMPARE(group->GetRow(1)->value, value.isEmpty() ? u"5"_s : value);
        ClickValue(*group, 1);
        QCOMPARE(window.Note(), QString());
    }

    void theMouseRestingOnAValueHidesNothing() {
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(u"first"_s), Row(u"second"_s)});
        const QRect others = group->RowRect(0).united(group->RowRect(1));
        const QImage before = group->viewport()->grab(others).toImage();
        const QImage resting = group->viewport()->grab(group->RowRect(2)).toImage();
        QTest::mouseMove(group->viewport(), group->RowRect(2).center() + QPoint(200, 0));
        QCOMPARE(group->viewport()->grab(others).toImage(), before);
        QVERIFY2(group->viewport()->grab(group->RowRect(2)).toImage() != resting, "the value gets a frame");
        QTest::mouseMove(group->viewport(), QPoint(40, 10));
        QCOMPARE(group->viewport()->grab(group->RowRect(2)).toImage(), resting);
    }

    void anOpenEditorFollowsItsCell() {
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(u"a&b"_s)});
        window.grid.SetEditorNote([](const PropertyRow&, const QString&) {
            return u"A remark that is long enough for more than one line beside its value"_s;
        });
        ClickValue(*group, 1);
        for (const int width : {1000, 640}) {
            window.resize(width, 400);
            QCoreApplication::processEvents();
            const QRect cell = group->visualRect(group->model()->index(1, PropertyModel::Value));
            QVERIFY(cell.contains(group->Editor()->geometry()));
            QVERIFY(group->Editor()->width() > cell.width() - 16);
            const auto* note = window.findChild<NoticeLine*>();
            QCOMPARE(note->mapTo(&window, QPoint()).x(), group->Editor()->mapTo(&window, QPoint()).x());
            QCOMPARE(note->width(), group->Editor()->width());
            QCOMPARE(note->height(), note->heightForWidth(note->width()));
        }
    }

    void marksAreSeenAndHeard() {
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(u"5"_s, PropertyType::Integer)});
        const QImage plain = group->grab().toImage();
        const auto spoken = [group] {
            return group->model()->index(1, PropertyModel::Value).data(Qt::AccessibleTextRole).toString();
        };
        group->SetMark(1, PropertyMark::NotRead);
        QVERIFY(group->grab().toImage() != plain);
        QCOMPARE(spoken(), u"L: 5, not read"_s);
        group->SetMark(1, PropertyMark::NotSaved);
        QCOMPARE(spoken(), u"L: 5, not saved"_s);
        for (int times = 1; times <= 2; ++times) { // until it is saved, Enter tries again
            QVERIFY(group->OpenEditor(1));
            QTest::keyClick(group->Editor(), Qt::Key_Return);
            QCoreApplication::processEvents();
            QCOMPARE(window.commits.size(), 1);
            group->SetMark(1, PropertyMark::None);
        }
        window.elsewhere->setFocus();
        QCOMPARE(group->grab().toImage(), plain);
    }

    void clicksOutsideOfAnEditableValueOpenNothing() {
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(u"text"_s), Row(u"text"_s)});
        group->SetReadOnly(2, true);
        ClickValue(*group, 0);
        ClickValue(*group, 0, PropertyModel::Label);
        ClickValue(*group, 1, PropertyModel::Label);
        ClickValue(*group, 2);
        QVERIFY(!group->Editor());
        for (int row : {-1, 0, 2, 3})
            QVERIFY2(!group->OpenEditor(row), qPrintable(QString::number(row)));
        group->SetReadOnly(2, false);
        ClickValue(*group, 2);
        QVERIFY(group->Editor());
    }

    void rowsEndAtTheLast() {
        GridWindow window;
        CPropertyGroup* group = window.AddGroup(u"Title"_s, {Row(u"V"_s, PropertyType::Boolean)});
        QCOMPARE(group->RowCount(), 2);
        QVERIFY(!group->GetRow(-1) && !group->GetRow(2));
        QCOMPARE(group->GetRow(0)->label, u"Title"_s);
        QStringList cells;
        for (int column = 0; column < PropertyModel::Columns; ++column)
            cells << group->model()->index(1, column).data().toString();
        QCOMPARE(cells.join(u'|'), u"L|V"_s);
    }

    void aCommitTellsTheRowAsItWas() {
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(u"5"_s, PropertyType::Integer)});
        QVERIFY(group->OpenEditor(1));
        QTest::keyClicks(group->Editor(), u"8"_s);
        QTest::keyClick(group->Editor(), Qt::Key_Return);
        group->SetValue(1, u"6"_s); // an answer that was under way
        QCoreApplication::processEvents();
        QCOMPARE(window.commits, QStringList{u"G/1 K=8"_s});
    }

    void aNewValueLeavesTheOpenEditorAlone() {
        GridWindow window;
        CPropertyGroup* group = window.Present({Row(u"old"_s)});
        QVERIFY(group->OpenEditor(1));
        group->SetValue(1, u"stored meanwhile"_s);
        QCOMPARE(qobject_cast<CDynamicEdit*>(group->Editor())->text(), u"old"_s);
        QTest::keyClick(group->Editor(), Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(group->GetRow(1)->value, u"stored meanwhile"_s);
        QCOMPARE(window.commits, QStringList());
    }

    void aChoiceFromTheListCommits() {
        GridWindow window;
        const PropertyRow row = Row(u"True"_s, PropertyType::Boolean);
        CPropertyGroup* group = window.Present({row, row});
        QVERIFY(group->OpenEditor(1));
        auto* combo = qobject_cast<CDynamicCombo*>(group->Editor());
        combo->showPopup();
        QCoreApplication::processEvents();
        QVERIFY2(group->Editor(), "the list takes the focus only for a while");
        QTest::keyClick(combo->view(), Qt::Key_Down);
        QTest::keyClick(combo->view(), Qt::Key_Return);
        QTRY_COMPARE(window.commits, QStringList{u"G/1 K=False"_s});
        QVERIFY(!group->Editor());

        QVERIFY(group->OpenEditor(1));
        QVERIFY(group->OpenEditor(2));
        QCoreApplication::processEvents();
        QCOMPARE(group->EditedRow(), 2);
    }

    void longAndStrangeTextsSurviveAnEdit() {
        GridWindow window;
        const QString strange =
            u"<b>\"bold\"</b>\n\tline\x01\u202Ereversed\u2028 end "_s + QString(64 * 1024, u'x');
        CPropertyGroup* group =
            window.Present({{strange, strange, u"K"_s, PropertyType::Text, strange, false},
                            Row(u"5"_s, PropertyType::Integer)});
        QVERIFY(!window.grab().isNull());
        QVERIFY(group->OpenEditor(1));
        window.elsewhere->setFocus();
        QVERIFY(group->OpenEditor(2));
        QTest::keyClicks(group->Editor(), u"6"_s);
        QTest::keyClick(group->Editor(), Qt::Key_Return);
        QCoreApplication::processEvents();
        QCOMPARE(window.commits, QStringList{u"G/2 K=6"_s});
        QCOMPARE(group->GetRow(1)->value, strange);

        QVERIFY(group->OpenEditor(1));
        QTest::keyClick(group->Editor(), Qt::Key_End);
        QTest::keyClicks(group->Editor(), u"!"_s);
        window.elsewhere->setFocus();
        QCOMPARE(group->GetRow(1)->value, strange + u'!');
        const QVariant tip = group->model()->index(1, PropertyModel::Value).data(Qt::ToolTipRole);
        QVERIFY(tip.toString().startsWith(u"&lt;b&gt;"));
    }

    void theKeyboardWalksAcrossGroups() {
        GridWindow window;
        const PropertyRow row = Row(u"V"_s);
        CPropertyGroup* first = window.AddGroup(u"First"_s, {row, row});
        CPropertyGroup* empty = window.AddGroup(u"Empty"_s, {});
        CPropertyGroup* last = window.AddGroup(u"Last"_s, {row});
        window.Present();
        first->setFocus(Qt::TabFocusReason);
        QStringList walk;
        for (const Qt::Key key :
             {Qt::Key_Up, Qt::Key_Down, Qt::Key_Down, Qt::Key_Down, Qt::Key_Up, Qt::Key_Home, Qt::Key_End}) {
            auto* group = qobject_cast<CPropertyGroup*>(QApplication::focusWidget());
            QVERIFY(group);
            QTest::keyClick(group, key);
            group = qobject_cast<CPropertyGroup*>(QApplication::focusWidget());
            QVERIFY(group && group != empty);
            walk << (group == first ? u"first "_s : u"last "_s) + QString::number(group->CurrentRow());
        }
        QCOMPARE(walk.join(u", "_s), u"first 1, first 2, last 1, last 1, first 2, first 1, last 1"_s);
        QTest::keyClick(last, Qt::Key_F2);
        QVERIFY(last->Editor());
        QTest::keyClick(last->Editor(), Qt::Key_Escape);
        QVERIFY2(last->hasFocus(), "the keyboard goes on from the row");
        QTest::keyClick(last, Qt::Key_Return);
        QVERIFY(last->Editor());
    }

    void remarksFollowTheText() {
        GridWindow window;
        CPropertyGroup* group = window.AddGroup(u"G"_s, {Row(u"a&b"_s)});
        window.grid.SetEditorNote([](const PropertyRow& row, const QString& text) {
            return text.contains(u'&') ? row.key + u" has <&>"_s : QString();
        });
        window.Present();
        QVERIFY(group->OpenEditor(1));
        QCOMPARE(window.Note(), u"K has <&>"_s);
        QTest::keyClicks(group->Editor(), u"ab"_s);
        QCOMPARE(window.Note(), QString());
        QTest::keyClicks(group->Editor(), u"&"_s);
        QCOMPARE(window.Note(), u"K has <&>"_s);
        QTest::keyClick(group->Editor(), Qt::Key_Escape);
        QCOMPARE(window.Note(), QString());
    }

    void screenReadersAreTold() {
        GridWindow window;
        CPropertyGroup* group = window.AddGroup(
            u"Upload"_s, {{u"Workers"_s, u"5"_s, u"K"_s, PropertyType::Integer, u"Later."_s, false}});
        window.Present();
        QAccessibleInterface* table = QAccessible::queryAccessibleInterface(group);
        QVERIFY(table && table->tableInterface());
        QCOMPARE(table->text(QAccessible::Name), u"Upload"_s);
        QCOMPARE(table->tableInterface()->columnDescription(PropertyModel::Label), u"Setting"_s);
        QCOMPARE(table->tableInterface()->columnDescription(PropertyModel::Value), u"Value"_s);
        QAccessibleInterface* cell = table->tableInterface()->cellAt(1, PropertyModel::Value);
        QVERIFY(cell);
        QCOMPARE(cell->text(QAccessible::Name), u"Workers: 5"_s);
        QCOMPARE(cell->text(QAccessible::Description), u"Later."_s);
        QVERIFY(group->OpenEditor(1));
        QCOMPARE(group->Editor()->accessibleName(), u"Workers"_s);
    }
};

BTASK_TEST(PropertyGridTest);
#include "PropertyGridTest.moc"
