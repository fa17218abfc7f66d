#include "ui/BrenListCtrl.h"

#include "support/ScriptedPrompts.h"
#include "support/TestMain.h"
#include "ui/FindBar.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPaintEvent>
#include <QScrollBar>
#include <QSignalSpy>
#include <QTemporaryDir>

namespace {

/// Three columns: a mark, a name and a delete icon.
ListRow TaskRow(int number, const QString& note = {}) {
    return {QStringLiteral("id%1").arg(number),
            {QStringLiteral("#COLOR:RED"), QStringLiteral("Task %1").arg(number) + note,
             QStringLiteral("#ICON:208#@@Click to delete")},
            {{}, NumberSortKey(number), {}}};
}

std::vector<ListRow> Tasks(const QList<int>& numbers) {
    std::vector<ListRow> rows;
    for (const int number : numbers)
        rows.push_back(TaskRow(number));
    return rows;
}

std::vector<ListRow> Tasks(int count) {
    std::vector<ListRow> rows;
    for (int number = 0; number < count; ++number)
        rows.push_back(TaskRow(number));
    return rows;
}

/// What is painted of a list from when this is made.
class PaintWatch : public QObject {
public:
    explicit PaintWatch(CBrenListCtrl& list) : m_viewport(list.viewport()) {
        QTest::qWait(0);
        m_viewport->installEventFilter(this);
    }

    QRegion Painted() {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        return m_painted;
    }

private:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            m_painted += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

    QWidget* m_viewport;
    QRegion m_painted;
};

struct Table {
    explicit Table(std::vector<ListRow> rows, TableKind kind = TableKind::Record) {
        list->SetTableKind(kind);
        list->AddColumn(QStringLiteral("Mark"), 40);
        list->AddColumn(QStringLiteral("Name"), 150);
        list->AddColumn(QStringLiteral("Action"), 60);
        list->SetRows(std::move(rows));
        frame.reset(FindBar::Above(list));
        frame->resize(400, 300);
        frame->show();
        list->setFocus();
        if (!QTest::qWaitForWindowExposed(frame.get()))
            qFatal("The list does not come up.");
    }

    QPoint Centre(int row, int column) const {
        return list->visualRect(list->model()->index(row, column)).center();
    }
    void Click(int row, int column) const {
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {}, Centre(row, column));
    }
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
    void TellsClicks() {
        Table table(Tasks(5));
        QSignalSpy left(table.list, &CBrenListCtrl::LeftClicked);
        QSignalSpy right(table.list, &CBrenListCtrl::RightClicked);
        table.Click(3, 2);
        QCOMPARE(left.count(), 0); // queued
        table.list->SetRows(Tasks({9, 0, 1, 2, 3}));
        QTRY_COMPARE(left.count(), 1);
        QCOMPARE(left.takeFirst(), (QVariantList{3, 2, QStringLiteral("id3")}));

        table.Click(0, 0);
        QTest::mouseClick(table.list->viewport(), Qt::LeftButton, {}, {100, 230});
        const QPoint centre = table.Centre(1, 1);
        QContextMenuEvent rightClick(QContextMenuEvent::Mouse, centre,
                                     table.list->viewport()->mapToGlobal(centre));
        QCoreApplication::sendEvent(table.list->viewport(), &rightClick);
        delete table.list->findChild<QMenu*>();
        QTRY_COMPARE(right.count(), 1);
        QCOMPARE(right.first(), (QVariantList{1, 1, QStringLiteral("id0")}));
        QCOMPARE(left.count(), 0);

        // Another row below the pointer than the one that was pressed.
        QTest::mousePress(table.list->viewport(), Qt::LeftButton, {}, table.Centre(2, 2));
        table.list->SetRows(Tasks({0, 1, 2, 3}));
        QTest::mouseRelease(table.list->viewport(), Qt::LeftButton, {}, table.Centre(2, 2));
        // A double click is one click.
        table.Click(3, 2);
        QTest::mouseDClick(table.list->viewport(), Qt::LeftButton, {}, table.Centre(3, 2));
        QTest::keyClick(table.list, Qt::Key_Return);
        QTRY_COMPARE(left.count(), 2);
        QCOMPARE(left.first(), (QVariantList{3, 2, QStringLiteral("id3")}));
        QCOMPARE(left.last(), left.first());
    }

    void TellsKeys_data() {
        QTest::addColumn<int>("key");
        QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
        QTest::addColumn<int>("code");
        const auto row = [](const char* name, int key, Qt::KeyboardModifiers modifiers, int code) {
            QTest::newRow(name) << key << modifiers << code;
        };
        row("delete", Qt::Key_Delete, {}, 0x2E);
        row("letter", Qt::Key_Q, {}, 0x51);
        row("digit", Qt::Key_7, {}, 0x37);
        row("digit of the pad", Qt::Key_7, Qt::KeypadModifier, 0x67);
        row("plus of the pad", Qt::Key_Plus, Qt::KeypadModifier, 0x6B);
        row("plus", Qt::Key_Plus, {}, 0xBB);
        row("F5", Qt::Key_F5, {}, 0x74);
        row("down", Qt::Key_Down, {}, 0x28);
        row("enter of the pad", Qt::Key_Enter, Qt::KeypadModifier, 0x0D);
        row("without a code", Qt::Key_MediaPlay, {}, 0);
    }

    void TellsKeys() {
        QFETCH(int, key);
        QFETCH(Qt::KeyboardModifiers, modifiers);
        Table table(Tasks(3));
        QSignalSpy keys(table.list, &CBrenListCtrl::KeyReleased);
        QTest::keyClick(table.list, Qt::Key(key), modifiers);
        QCOMPARE(keys.count(), 0);
        QTRY_COMPARE(keys.count(), 1);
        QTEST(keys.first().first().toInt(), "code");
        QCOMPARE(keys.first().last().toUInt(), 0xC000u);
    }

    void PaintsOnlyWhatChanges() {
        Table table(Tasks(1000));
        {
            PaintWatch watch(*table.list);
            table.list->SetRows(Tasks(1000));
            QVERIFY(table.list->SetCellText(3, 1, QStringLiteral("Task 3")));
            QCOMPARE(watch.Painted(), QRegion());
        }
        {
            PaintWatch watch(*table.list);
            std::vector<ListRow> rows = Tasks(1000);
            rows[4] = TaskRow(4, QStringLiteral(" paused"));
            rows[900] = TaskRow(900, QStringLiteral(" out of sight"));
            table.list->SetRows(std::move(rows));
            QCOMPARE(watch.Painted(), QRegion(table.list->visualRect(table.list->model()->index(4, 1))));
        }
        {
            PaintWatch watch(*table.list);
            QVERIFY(table.list->SetCellText(5, 2, {}));
            QCOMPARE(watch.Painted(), QRegion(table.list->visualRect(table.list->model()->index(5, 2))));
        }
        QVERIFY(!table.list->SetCellText(1000, 1, {}));
        QVERIFY(!table.list->SetCellText(0, 3, {}));
        QVERIFY(!table.list->SetCellText(-1, 0, {}));
    }

    void ShadesDisplayedRows() {
        Table table(Tasks(4));
        const auto colour = [&](int row, int column) {
            const QImage image = table.list->viewport()->grab().toImage();
            return QColor(
                image.pixel(table.list->visualRect(table.list->model()->index(row, column)).topLeft()));
        };
        const QColor grey(0xF0, 0xF0, 0xF0);
        QCOMPARE(colour(0, 1), grey);
        QCOMPARE(colour(1, 1), QColor(Qt::white));
        QCOMPARE(colour(2, 0), QColor(Qt::white)); // a swatch
        table.list->SetFilter(QStringLiteral("Task 1"));
        QCOMPARE(colour(0, 1), grey);
        table.list->selectRow(0);
        QCOMPARE(colour(0, 1), table.list->palette().color(QPalette::Highlight));
        table.list->clearSelection();
        table.list->SetUnshadedColumn(1);
        QCOMPARE(colour(0, 1), QColor(Qt::white));
        table.list->SetUnshadedColumn(-1);
        table.list->SetRowShading(false);
        QCOMPARE(colour(0, 1), QColor(Qt::white));
    }

    void RefreshKeepsPlace() {
        Table table(Tasks(300));
        table.list->SetMultiSelection(true);
        table.list->verticalScrollBar()->setValue(100 * 24 + 7);
        table.Click(2, 1); // beyond the page: the view scrolls nowhere
        table.list->setCurrentIndex(table.list->model()->index(102, 1));
        table.list->selectionModel()->select(table.list->model()->index(104, 0),
                                             QItemSelectionModel::Select | QItemSelectionModel::Rows);
        const int offset = table.list->rowViewportPosition(102);

        std::vector<ListRow> rows = Tasks(300);
        rows.erase(rows.begin() + 50, rows.begin() + 60);
        std::swap(rows[0], rows[200]);
        rows.insert(rows.begin(), TaskRow(1000));
        table.list->SetRows(std::move(rows));
        QCOMPARE(table.list->SelectedIds(), (QStringList{QStringLiteral("id102"), QStringLiteral("id104")}));
        QCOMPARE(table.list->CurrentId(), QStringLiteral("id102"));
        QCOMPARE(table.list->rowViewportPosition(table.list->currentIndex().row()), offset);
    }

    void RowThatGoesTakesItsSelection() {
        for (const bool multi : {false, true}) {
            Table table(Tasks(5));
            table.list->SetMultiSelection(multi);
            table.Click(2, 1);
            table.list->SetRows(Tasks({0, 1, 3, 4}));
            QCOMPARE(table.list->SelectedIds(), QStringList());
            QVERIFY(table.list->currentIndex().isValid());
            table.Click(1, 1);
            table.list->SetFilter(QStringLiteral("Task 4"));
            QCOMPARE(table.list->SelectedIds(), QStringList());
            table.list->SetFilter({});
            QCOMPARE(table.list->SelectedIds(), QStringList());
            table.list->SetRows({});
            QVERIFY(!table.list->currentIndex().isValid());
        }
    }

    void SortsByKeys() {
        Table table(Tasks({10, 9, 100, 1}));
        table.Click(1, 1);
        const auto clickHeader = [&] {
            QTest::mouseClick(table.list->horizontalHeader()->viewport(), Qt::LeftButton, {}, {60, 18});
        };
        clickHeader();
        QCOMPARE(table.Names().join(u' '), QStringLiteral("1 9 10 100"));
        clickHeader();
        QCOMPARE(table.Names().join(u' '), QStringLiteral("100 10 9 1"));
        clickHeader();
        QCOMPARE(table.Names().join(u' '), QStringLiteral("10 9 100 1"));
        QCOMPARE(table.list->SelectedIds(), QStringList(QStringLiteral("id9")));
    }

    void RefreshKeepsSortAndFilter() {
        Table table(Tasks({3, 1, 2}));
        table.list->SortByNext(1);
        table.list->SetFilter(QStringLiteral("TASK"));
        std::vector<ListRow> rows = Tasks({5, 2, 0, 4});
        rows.push_back({QStringLiteral("x"), {{}, QStringLiteral("Other"), {}}});
        table.list->SetRows(std::move(rows));
        QCOMPARE(table.Names().join(u' '), QStringLiteral("0 2 4 5"));
        QVERIFY(table.list->SetCellText(1, 1, QStringLiteral("Task two")));
        table.list->AppendRows({TaskRow(3)});
        QCOMPARE(table.Names().join(u' '), QStringLiteral("0 two 3 4 5"));

        // Many runs of rows that come and go at once.
        QList<int> all;
        for (int number = 0; number < 500; ++number)
            all.append(number * 7 % 500);
        table.list->SetRows(Tasks(all));
        table.list->SetFilter(QStringLiteral("9"));
        const QStringList names = table.Names();
        QCOMPARE(names.size(), 500 - 5 * 81 + 0);
        table.list->SetFilter({});
        for (int number = 0; number < 500; ++number)
            QCOMPARE(table.Names().at(number), QString::number(number));
    }

    void Finds() {
        Table table(Tasks(30));
        QLineEdit* words = table.frame->findChild<QLineEdit*>();
        QVERIFY(!words->isVisible());
        QTest::keyClick(table.list, Qt::Key_F, Qt::ControlModifier);
        QVERIFY(words->isVisible());
        QTest::keyClicks(words, QStringLiteral("task 2"));
        QCOMPARE(table.list->model()->rowCount(), 11);
        bool counted = false;
        for (const QLabel* label : table.frame->findChildren<QLabel*>())
            counted |= label->text() == QStringLiteral("11 of 30");
        QVERIFY(counted);
        QTest::keyClick(words, Qt::Key_Escape);
        QVERIFY(!words->isVisible());
        QCOMPARE(table.list->model()->rowCount(), 30);

        // The words of a cell are found, its markup and hidden columns are not.
        table.list->SetFilter(QStringLiteral("ICON"));
        QCOMPARE(table.list->model()->rowCount(), 0);
        table.list->SetFilter(QStringLiteral("red"));
        QCOMPARE(table.list->model()->rowCount(), 30);
        table.list->SetColumnWidth(0, 0);
        table.list->SetFilter(QStringLiteral("RED"));
        QCOMPARE(table.list->model()->rowCount(), 0);
    }

    void FixedTableKeepsOrder() {
        Table table(Tasks({3, 1, 2}), TableKind::Fixed);
        QTest::mouseClick(table.list->horizontalHeader()->viewport(), Qt::LeftButton, {}, {60, 18});
        table.list->SetFilter(QStringLiteral("Task 1"));
        QTest::keyClick(table.list, Qt::Key_F, Qt::ControlModifier);
        QCOMPARE(table.Names().join(u' '), QStringLiteral("3 1 2"));
        QVERIFY(!table.frame->findChild<QLineEdit*>()->isVisible());
    }

    void TypesAhead() {
        std::vector<ListRow> rows;
        for (const char* name : {"alpha", "beta", "Bravo", "gamma"})
            rows.emplace_back(QString::fromUtf8(name), QStringList{{}, QString::fromUtf8(name), {}});
        const auto typed = [&rows](const QString& keys) {
            Table table(rows);
            table.list->setCurrentIndex(table.list->model()->index(0, 1));
            QTest::keyClicks(table.list, keys);
            return table.list->CurrentId();
        };
        QCOMPARE(typed(QStringLiteral("br")), QStringLiteral("Bravo"));
        QCOMPARE(typed(QStringLiteral("b")), QStringLiteral("beta"));
        QCOMPARE(typed(QStringLiteral("bb")), QStringLiteral("Bravo"));
        QCOMPARE(typed(QStringLiteral("bbb")), QStringLiteral("beta"));
        QCOMPARE(typed(QStringLiteral("zz")), QStringLiteral("alpha"));
    }

    void CopiesAndExports() {
        QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("rows.csv"));
        std::vector<ListRow> rows;
        rows.emplace_back(QStringLiteral("a"),
                          QStringList{QStringLiteral("#COLOR:RED"), QStringLiteral("say \"hi\",\tyou"),
                                      QStringLiteral("##gone")});
        rows.emplace_back(
            QStringLiteral("b"),
            QStringList{QStringLiteral("#Progress:3 4@@3 of 4"), QString::fromUtf8("\u00e4\n"), {}});
        Table table(std::move(rows));
        table.list->SetMultiSelection(true);
        table.list->SortByNext(1);
        table.list->SortByNext(1); // descending
        table.list->selectAll();
        QTest::keyClick(table.list, Qt::Key_C, Qt::ControlModifier);
        QCOMPARE(table.prompts.clipboardText,
                 QString::fromUtf8("75.00 % (3 of 4)\t\u00e4 \t\nred\tsay \"hi\", you\tgone"));

        table.prompts.ExpectPick(QStringLiteral("Export"), path);
        table.list->SetColumnWidth(2, 0);
        table.list->ExportRows();
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(QString::fromUtf8(file.readAll().mid(3)),
                 QString::fromUtf8(
                     "Mark,Name\r\n75.00 % (3 of 4),\"\u00e4\n\"\r\nred,\"say \"\"hi\"\",\tyou\"\r\n"));
    }

    void TellsWhenTheExportFails() {
        QTemporaryDir folder;
        Table table(Tasks(2));
        table.prompts.ExpectPick(QStringLiteral("Export"), std::nullopt);
        table.list->ExportRows();
        table.prompts.ExpectPick(QStringLiteral("Export"),
                                 folder.filePath(QStringLiteral("missing/rows.csv")));
        table.prompts.ExpectMessage(QStringLiteral("The file could not be written."));
        table.list->ExportRows();
        QVERIFY(table.prompts.IsPlayed());
    }

    void RemembersWidths() {
        QTemporaryDir home;
        qputenv("BREN_HOME", home.path().toUtf8());
        {
            Table table(Tasks(2));
            table.list->RememberWidths(QStringLiteral("Tasks"));
            QWidget* header = table.list->horizontalHeader()->viewport();
            QTest::mousePress(header, Qt::LeftButton, {}, {190, 18});
            QTest::mouseMove(header, {210, 18});
            QTest::mouseMove(header, {220, 18});
            QTest::mouseRelease(header, Qt::LeftButton, {}, {220, 18});
            QCOMPARE(table.list->columnWidth(1), 180);
            QCOMPARE(table.list->columnWidth(2), table.list->viewport()->width() - 220); // fills the rest
        }
        Table same(Tasks(2));
        same.list->RememberWidths(QStringLiteral("Tasks"));
        QCOMPARE(same.list->columnWidth(1), 180);
        Table other(Tasks(2));
        other.list->RememberWidths(QStringLiteral("Others"));
        QCOMPARE(other.list->columnWidth(1), 150);
        Table wider(Tasks(2));
        wider.list->AddColumn(QStringLiteral("New"), 20);
        wider.list->RememberWidths(QStringLiteral("Tasks"));
        QCOMPARE(wider.list->columnWidth(1), 150);
        wider.list->AddColumn({}, 24);
        QCOMPARE(wider.list->columnWidth(4), 24); // has no title to fill
        qunsetenv("BREN_HOME");
    }

    void SpeaksInWords() {
        Table table(Tasks(2));
        table.list->SetCellText(0, 1, QStringLiteral("#Progress:3 4@@3 of 4 processed"));
        QAccessible::setActive(true);
        QAccessibleInterface* list = QAccessible::queryAccessibleInterface(table.list);
        QVERIFY(list && list->tableInterface());
        const auto words = [&](int row, int column) {
            return list->tableInterface()->cellAt(row, column)->text(QAccessible::Name);
        };
        QCOMPARE(words(0, 0), QStringLiteral("red"));
        QCOMPARE(words(0, 1), QStringLiteral("75.00 % (3 of 4 processed)"));
        QCOMPARE(words(1, 2), QStringLiteral("delete"));
    }
};

BTASK_TEST(BrenListCtrlTest);
#include "BrenListCtrlTest.moc"
