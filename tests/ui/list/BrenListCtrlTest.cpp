#include "list/BrenListCtrl.h"

#include "list/FindBar.h"
#include "look/Look.h"
#include "support/PaintNote.h"
#include "support/ScriptedPrompts.h"
#include "support/SteppingReader.h"
#include "support/TestMain.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <numeric>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Three columns: a mark, a name and a delete icon.
ListRow TaskRow(int number, const QString& note = {}) {
    return {u"id%1"_s.arg(number),
            {u"#COLOR:RED"_s, u"Task %1"_s.arg(number) + note, u"#ICON:208#@@Click to delete"_s},
            {{}, NumberSortKey(number), {}}};
}

std::vector<ListRow> Tasks(const QList<int>& numbers) {
    std::vector<ListRow> rows;
    for (const int number : numbers)
        rows.push_back(TaskRow(number));
    return rows;
}

std::vector<ListRow> Tasks(int count) {
    QList<int> numbers(count);
    std::iota(numbers.begin(), numbers.end(), 0);
    return Tasks(numbers);
}

struct Table {
    explicit Table(std::vector<ListRow> rows, TableKind kind = TableKind::Record) {
        list->SetTableKind(kind);
        list->AddColumn(u"Mark"_s, 40);
        list->AddColumn(u"Name"_s, 150);
        list->AddColumn(u"Action"_s, 60);
        list->SetRows(std::move(rows));
        frame.reset(FindBar::Above(list));
        frame->resize(400, 300);
        frame->show();
        list->setFocus();
        if (!QTest::qWaitForWindowExposed(frame.get()))
            qFatal("The list does not come up.");
    }

    CBrenListCtrl* operator->() const { return list; }

    QPoint Centre(int row, int column) const {
        return list->visualRect(list->model()->index(row, column)).center();
    }
    void Click(int row, int column) const {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, Centre(row, column));
    }
    void ClickHeader() const {
        QTest::mouseClick(list->horizontalHeader()->viewport(), Qt::LeftButton, {}, {60, 18});
    }
    QStringList Selected() const {
        QStringList names;
        for (const TakenRow& row : list->SelectedRows())
            names.append(row.Cell(1).mid(5));
        return names;
    }
    QString Current() const { return list->Rows().CellText(list->currentIndex().row(), 1); }
    QStringList Names() const {
        QStringList names;
        for (int row = 0; row < list->model()->rowCount(); ++row)
            names.append(list->model()->index(row, 1).data().toString().mid(5));
        return names;
    }

    ScriptedPrompts prompts;
    CBrenListCtrl* list = new CBrenListCtrl(prompts);
    std::unique_ptr<QWidget> frame;
};

} // namespace

class BrenListCtrlTest : public QObject {
    Q_OBJECT

private slots:
    void tellsClicks() {
        Table table(Tasks(5));
        QSignalSpy left(table.list, &CBrenListCtrl::LeftClicked);
        QSignalSpy right(table.list, &CBrenListCtrl::RightClicked);
        const auto told = [](const QVariantList& click) {
            return u"%1 %2 %3"_s.arg(click[0].toInt())
                .arg(click[1].toInt())
                .arg(click[2].value<TakenRow>().Cell(1));
        };
        table.Click(3, 2);
        QCOMPARE(left.count(), 0); // queued
        table->SetRows(Tasks({9, 0, 1, 2, 3}));
        QTRY_COMPARE(left.count(), 1);
        QCOMPARE(told(left.takeFirst()), u"3 2 Task 3"_s);

        table.Click(0, 0);
        QTest::mouseClick(table->viewport(), Qt::LeftButton, {}, {100, 230});
        const QPoint centre = table.Centre(1, 1);
        QContextMenuEvent rightClick(QContextMenuEvent::Mouse, centre,
                                     table->viewport()->mapToGlobal(centre));
        QCoreApplication::sendEvent(table->viewport(), &rightClick);
        delete table->findChild<QMenu*>();
        QTRY_COMPARE(right.count(), 1);
        QCOMPARE(told(right.first()), u"1 1 Task 0"_s);
        QCOMPARE(left.count(), 0);

        // Another row below the pointer than the one that was pressed.
        QTest::mousePress(table->viewport(), Qt::LeftButton, {}, table.Centre(2, 2));
        table->SetRows(Tasks({0, 1, 2, 3}));
        QTest::mouseRelease(table->viewport(), Qt::LeftButton, {}, table.Centre(2, 2));
        // A double click is one click.
        table.Click(3, 2);
        QTest::mouseDClick(table->viewport(), Qt::LeftButton, {}, table.Centre(3, 2));
        QTest::keyClick(table.list, Qt::Key_Return);
        QTRY_COMPARE(left.count(), 2);
        QCOMPARE(told(left.first()), u"3 2 Task 3"_s);
        QCOMPARE(told(left.last()), told(left.first()));

        QSignalSpy keys(table.list, &CBrenListCtrl::KeyReleased);
        QTest::keyClick(table.list, Qt::Key_Delete);
        QCOMPARE(keys.count(), 0);
        QTRY_COMPARE(keys.count(), 1);
        QCOMPARE(keys.first().first().toInt(), int(Qt::Key_Delete));
    }

    void paintsOnlyWhatChanges() {
        Table table(Tasks(1000));
        PaintNote note(*table->viewport());
        const auto painted = [&note] {
            QCoreApplication::sendPostedEvents();
            QCoreApplication::processEvents();
            return note.Take();
        };
        const auto cell = [&table](int row, int column) {
            return QRegion(table->visualRect(table->model()->index(row, column)));
        };
        painted();
        table->SetRows(Tasks(1000));
        QVERIFY(table->SetCellText(3, 1, u"Task 3"_s));
        QCOMPARE(painted(), QRegion());
        std::vector<ListRow> rows = Tasks(1000);
        rows[4] = TaskRow(4, u" paused"_s);
        rows[900] = TaskRow(900, u" out of sight"_s);
        table->SetRows(std::move(rows));
        QCOMPARE(painted(), cell(4, 1));
        QVERIFY(table->SetCellText(5, 2, {}));
        QCOMPARE(painted(), cell(5, 2));
        for (const auto& [row, column] : {std::pair(1000, 1), std::pair(0, 3), std::pair(-1, 0)})
            QVERIFY(!table->SetCellText(row, column, {}));
    }

    void shadesDisplayedRows() {
        Table table(Tasks(4));
        const auto colour = [&](int row, int column) {
            const QImage image = table->viewport()->grab().toImage();
            return QColor(image.pixel(table->visualRect(table->model()->index(row, column)).topLeft()));
        };
        const QColor grey(0xF0, 0xF0, 0xF0);
        QCOMPARE(colour(0, 1), grey);
        QCOMPARE(colour(1, 1), QColor(Qt::white));
        QCOMPARE(colour(2, 0), QColor(Qt::white)); // a swatch
        table->SetFilter(u"Task 1"_s);
        QCOMPARE(colour(0, 1), grey);
        table->selectRow(0);
        QCOMPARE(colour(0, 1), table->palette().color(QPalette::Highlight));
        table->clearSelection();
        table->SetUnshadedColumn(1);
        QCOMPARE(colour(0, 1), QColor(Qt::white));
        table->SetUnshadedColumn(-1);
        table->SetRowShading(false);
        QCOMPARE(colour(0, 1), QColor(Qt::white));
    }

    void refreshKeepsPlace() {
        Table table(Tasks(300));
        table->SetMultiSelection(true);
        table->verticalScrollBar()->setValue(100 * 24 + 7);
        table.Click(2, 1); // beyond the page: the view scrolls nowhere
        table->setCurrentIndex(table->model()->index(102, 1));
        table->selectionModel()->select(table->model()->index(104, 0),
                                        QItemSelectionModel::Select | QItemSelectionModel::Rows);
        const int offset = table->rowViewportPosition(102);

        std::vector<ListRow> rows = Tasks(300);
        rows.erase(rows.begin() + 50, rows.begin() + 60);
        std::swap(rows[0], rows[200]);
        rows.insert(rows.begin(), TaskRow(1000));
        table->SetRows(std::move(rows));
        QCOMPARE(table.Selected(), (QStringList{u"102"_s, u"104"_s}));
        QCOMPARE(table.Current(), u"Task 102"_s);
        QCOMPARE(table->rowViewportPosition(table->currentIndex().row()), offset);
    }

    void aListAtItsTopShowsNewRows() {
        Table table(Tasks(300));
        table->SetRows(Tasks({1000, 0, 1, 2}));
        QCOMPARE(table->rowAt(1), 0);
        QCOMPARE(table.Names().first(), u"1000"_s);
    }

    void keysGoByRow() {
        Table table(Tasks(300));
        QTest::keyClick(table.list, Qt::Key_Return);
        QCOMPARE(table.Selected(), QStringList(u"0"_s)); // in a fresh list
        table->setCurrentIndex(table->model()->index(5, 2));
        QTest::keyClick(table.list, Qt::Key_End);
        QCOMPARE(table->currentIndex(), table->model()->index(299, 2));
        QTest::keyClick(table.list, Qt::Key_Home);
        QCOMPARE(table->currentIndex(), table->model()->index(0, 2));
    }

    void anEmptyListShowsTheFocus() {
        Table table({});
        const auto edge = [&table] { return QColor(table->viewport()->grab().toImage().pixel(150, 1)); };
        QTRY_VERIFY(table->hasFocus());
        QCOMPARE(edge(), Look::Accent);
        table->clearFocus();
        QVERIFY(edge() != Look::Accent);
    }

    void aClickIsForWhatWasPressed() {
        Table table(Tasks(30));
        QSignalSpy left(table.list, &CBrenListCtrl::LeftClicked);
        const QPoint pressed = table->viewport()->mapToGlobal(table.Centre(3, 2));
        QTest::mousePress(table->viewport(), Qt::LeftButton, {}, table.Centre(3, 2));
        QTest::keyClick(table.list, Qt::Key_F, Qt::ControlModifier); // the bar moves the rows
        QVERIFY(table.frame->findChild<QLineEdit*>()->isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        const QPoint released = table->viewport()->mapFromGlobal(pressed);
        QVERIFY(!table->visualRect(table->model()->index(3, 2)).contains(released));
        QTest::mouseRelease(table->viewport(), Qt::LeftButton, {}, released);
        QCoreApplication::sendPostedEvents();
        QCOMPARE(left.count(), 0);
    }

    void columnsShrinkToTheirTitles() {
        Table table(Tasks(3));
        table->AddColumn(u"Wide"_s, 400);
        const QHeaderView* header = table->horizontalHeader();
        QCOMPARE(header->length(), table->viewport()->width());
        QVERIFY(header->sectionSize(1) < 150 && header->sectionSize(3) < 400);
        table->AddColumn({}, 24, Qt::AlignLeft, u"Delete"_s);
        QCOMPARE(header->sectionSize(4), 24);
        table.frame->resize(900, 300);
        QTRY_COMPARE(header->sectionSize(1), 150);
    }

    void sortsManyRowsOnALane() {
        SteppingReader reader;
        Table table(Tasks(6000));
        table->WorkOn(reader);
        const auto lane = [&reader] { return reader.Step(Lane::Computing); };
        table.ClickHeader();
        table->SetFilter(u"Task 59"_s); // the newest wish wins, the sort with it
        table->SetFilter(u"Task 599"_s);
        QCOMPARE(table->model()->rowCount(), 6000);
        while (lane()) {
        }
        QCOMPARE(table.Names().join(u' '), u"599 5990 5991 5992 5993 5994 5995 5996 5997 5998 5999"_s);

        table->SetFilter({});
        table.frame->hide(); // the work rests with its page
        while (lane()) {
        }
        QCOMPARE(table->model()->rowCount(), 11);
        table.frame->show();
        while (lane()) {
        }
        QCOMPARE(table->model()->rowCount(), 6000);

        table->setFocus();
        QTest::keyClicks(table.list, u"task 4711"_s);
        while (lane()) {
        }
        QCOMPARE(table.Current(), u"Task 4711"_s);
        table->SetMultiSelection(true);
        table->selectAll();
        table->CopySelected();
        QVERIFY(table.prompts.clipboardText.isEmpty());
        while (lane()) {
        }
        QCOMPARE(table.prompts.clipboardText.count(u'\n'), 5999);
    }

    void rowThatGoesTakesItsSelection() {
        for (const bool multi : {false, true}) {
            Table table(Tasks(5));
            table->SetMultiSelection(multi);
            table.Click(2, 1);
            table->SetRows(Tasks({0, 1, 3, 4}));
            QCOMPARE(table.Selected(), QStringList());
            QVERIFY(table->currentIndex().isValid());
            table.Click(1, 1);
            table->SetFilter(u"Task 4"_s);
            QCOMPARE(table.Selected(), QStringList());
            table->SetFilter({});
            QCOMPARE(table.Selected(), QStringList());
            table->SetRows(RowSet());
            QVERIFY(!table->currentIndex().isValid());
        }
    }

    void sortsByKeys() {
        Table table(Tasks({10, 9, 100, 1}));
        table.Click(1, 1);
        table.ClickHeader();
        QCOMPARE(table.Names().join(u' '), u"1 9 10 100"_s);
        table.ClickHeader();
        QCOMPARE(table.Names().join(u' '), u"100 10 9 1"_s);
        table.ClickHeader();
        QCOMPARE(table.Names().join(u' '), u"10 9 100 1"_s);
        QCOMPARE(table.Selected(), QStringList(u"9"_s));
    }

    void refreshKeepsSortAndFilter() {
        Table table(Tasks({3, 1, 2}));
        table->SortByNext(1);
        table->SetFilter(u"TASK"_s);
        std::vector<ListRow> rows = Tasks({5, 2, 0, 4});
        rows.push_back({u"x"_s, {{}, u"Other"_s, {}}});
        table->SetRows(std::move(rows));
        QCOMPARE(table.Names().join(u' '), u"0 2 4 5"_s);
        RowSet more = table->Rows().AllRows();
        more.Append(TextRows({TaskRow(3)}).At(0).block);
        table->AppendRows(more);
        QCOMPARE(table.Names().join(u' '), u"0 2 3 4 5"_s);

        // Many runs of rows that come and go at once.
        QList<int> all;
        for (int number = 0; number < 500; ++number)
            all.append(number * 7 % 500);
        table->SetRows(Tasks(all));
        table->SetFilter(u"9"_s);
        QCOMPARE(table.Names().size(), 500 - 5 * 81);
        table->SetFilter({});
        for (int number = 0; number < 500; ++number)
            QCOMPARE(table.Names().at(number), QString::number(number));
    }

    void finds() {
        Table table(Tasks(30));
        QLineEdit* words = table.frame->findChild<QLineEdit*>();
        QVERIFY(!words->isVisible());
        QTest::keyClick(table.list, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(words->isVisible());
        QTest::keyClicks(words, u"task 2"_s);
        QCOMPARE(table->model()->rowCount(), 11);
        const auto labels = table.frame->findChildren<QLabel*>();
        QVERIFY(std::any_of(labels.begin(), labels.end(),
                            [](auto* label) { return label->text() == u"11 of 30"; }));
        QTest::keyClick(words, Qt::Key_Escape);
        QVERIFY(!words->isVisible());
        QCOMPARE(table->model()->rowCount(), 30);

        // The words of a cell are found, its markup is not.
        table->SetFilter(u"ICON"_s);
        QCOMPARE(table->model()->rowCount(), 0);
        table->SetFilter(u"ERROR"_s);
        QCOMPARE(table->model()->rowCount(), 30);
    }

    void fixedTableKeepsOrder() {
        Table table(Tasks({3, 1, 2}), TableKind::Fixed);
        table.ClickHeader();
        table->SetFilter(u"Task 1"_s);
        QTest::keyClick(table.list, Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(table.Names().join(u' '), u"3 1 2"_s);
        QVERIFY(!table.frame->findChild<QLineEdit*>()->isVisible());
    }

    void typesAhead() {
        std::vector<ListRow> rows;
        for (const char* name : {"alpha", "beta", "Bravo", "gamma"})
            rows.emplace_back(QString::fromUtf8(name), QStringList{{}, QString::fromUtf8(name), {}});
        const auto typed = [&rows](const QString& keys) {
            Table table(rows);
            table->setCurrentIndex(table->model()->index(0, 1));
            QTest::keyClicks(table.list, keys);
            return table.Current();
        };
        QCOMPARE(typed(u"br"_s), u"Bravo"_s);
        QCOMPARE(typed(u"b"_s), u"beta"_s);
        QCOMPARE(typed(u"bb"_s), u"Bravo"_s);
        QCOMPARE(typed(u"bbb"_s), u"beta"_s);
        QCOMPARE(typed(u"zz"_s), u"alpha"_s);
    }

    void copiesAndExports() {
        QTemporaryDir folder;
        const QString path = folder.filePath(u"rows.csv"_s);
        std::vector<ListRow> rows;
        rows.emplace_back(u"a"_s, QStringList{u"#COLOR:RED"_s, u"say \"hi\",\tyou"_s, u"##gone"_s,
                                              u"#ICON:208#@@Click to delete"_s});
        rows.emplace_back(u"b"_s, QStringList{u"#Progress:3 4@@3 of 4"_s, QString::fromUtf8("\u00e4\n"), {}});
        Table table(std::move(rows));
        table->AddColumn({}, 24, Qt::AlignLeft, u"Delete"_s);
        table->SetCommandColumns(1);
        table->SetMultiSelection(true);
        table->SortByNext(1);
        table->SortByNext(1); // descending
        table->selectAll();
        QTest::keyClick(table.list, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(table.prompts.clipboardText,
                 QString::fromUtf8("75.00 % (3 of 4)\t\u00e4 \t\nError\tsay \"hi\", you\tgone"));

        table.prompts.ExpectPick(u"Export"_s, path);
        table->ExportRows();
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll().mid(3)),
                 QString::fromUtf8("Mark,Name,Action\r\n75.00 % (3 of 4),\"\u00e4\n\",\r\nError,\"say "
                                   "\"\"hi\"\",\tyou\",gone\r\n"));

        table->SetFilter(u"delete"_s);
        QCOMPARE(table->model()->rowCount(), 0);
    }

    void tellsWhenTheExportFails() {
        QTemporaryDir folder;
        Table table(Tasks(2));
        table.prompts.ExpectPick(u"Export"_s, std::nullopt);
        table->ExportRows();
        table.prompts.ExpectPick(u"Export"_s, folder.filePath(u"missing/rows.csv"_s));
        table.prompts.ExpectMessage(u"The file could not be written."_s);
        table->ExportRows();
        QVERIFY(table.prompts.IsPlayed());
    }

    void remembersWidths() {
        QTemporaryDir home;
        qputenv("BREN_HOME", home.path().toUtf8());
        {
            Table table(Tasks(2));
            table->RememberWidths(u"Tasks"_s);
            QWidget* header = table->horizontalHeader()->viewport();
            QTest::mousePress(header, Qt::LeftButton, {}, {190, 18});
            QTest::mouseMove(header, {210, 18});
            QTest::mouseMove(header, {220, 18});
            QTest::mouseRelease(header, Qt::LeftButton, {}, {220, 18});
            QCOMPARE(table->columnWidth(1), 180);
            QCOMPARE(table->columnWidth(2), table->viewport()->width() - 220); // fills the rest
        }
        Table same(Tasks(2));
        same.list->RememberWidths(u"Tasks"_s);
        QCOMPARE(same.list->columnWidth(1), 180);
        Table other(Tasks(2));
        other.list->RememberWidths(u"Others"_s);
        QCOMPARE(other.list->columnWidth(1), 150);
        Table wider(Tasks(2));
        wider.list->AddColumn(u"New"_s, 20);
        wider.list->RememberWidths(u"Tasks"_s);
        QCOMPARE(wider.list->columnWidth(1), 150);
        wider.list->AddColumn({}, 24);
        QCOMPARE(wider.list->columnWidth(4), 24); // has no title to fill
        qunsetenv("BREN_HOME");
    }

    void speaksInWords() {
        Table table(Tasks(2));
        table->SetCellText(0, 1, u"#Progress:3 4@@3 of 4 processed"_s);
        QAccessible::setActive(true);
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(table.list);
        QVERIFY(list && list->tableInterface());
        const auto words = [&](int row, int column) {
            return list->tableInterface()->cellAt(row, column)->text(QAccessible::Name);
        };
        QCOMPARE(words(0, 0), u"Error"_s);
        QCOMPARE(words(0, 1), u"75.00 % (3 of 4 processed)"_s);
        QCOMPARE(words(1, 2), u"delete"_s);
        QCOMPARE(list->tableInterface()->rowDescription(1), u"Error, Task 1, delete"_s);
        table->AddColumn({}, 24, Qt::AlignLeft, u"Delete"_s);
        QCOMPARE(table->model()->headerData(3, Qt::Horizontal, Qt::AccessibleTextRole).toString(),
                 u"Delete"_s);
    }
};

BTASK_TEST(BrenListCtrlTest);
#include "BrenListCtrlTest.moc"
