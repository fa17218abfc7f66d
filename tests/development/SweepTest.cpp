#include "development/Sweep.h"
#include "look/Look.h"
#include "support/TestMain.h"
#include "wizard/WizardSteps.h"

#include <QAbstractButton>
#include <QDialog>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QPushButton>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

/// A control that paints itself: its text goes away under the pointer when `hoverFault` is set, and it shows
/// its focus when `ring` is.
class PaintedControl : public QAbstractButton {
public:
    PaintedControl(const QString& text, bool hoverFault, bool ring) : m_hoverFault(hoverFault), m_ring(ring) {
        setText(text);
        setFocusPolicy(Qt::StrongFocus);
        setAttribute(Qt::WA_Hover);
    }
    QSize sizeHint() const override { return {160, 28}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(rect(), Qt::white);
        if (m_ring && hasFocus())
            painter.drawRect(rect().adjusted(1, 1, -2, -2));
        if (!m_hoverFault || !underMouse())
            painter.drawText(rect(), Qt::AlignCenter, text());
    }

private:
    bool m_hoverFault;
    bool m_ring;
};

/// Paints no row at all while the pointer is on one.
class BlankingDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        if (!static_cast<const QAbstractItemView*>(option.widget)->viewport()->underMouse())
            QStyledItemDelegate::paint(painter, option, index);
    }
};

/// What is planted.
struct Faults {
    bool hover = false;
    bool cut = false;
    bool nameless = false;
    bool jump = false;
    bool ringless = false;
    bool overlap = false;
    bool noDefault = false;
    bool empty = false;
    bool blanking = false;
};

/// A dialog as it should be, but for the faults planted in it.
class PlantedDialog : public QDialog {
public:
    explicit PlantedDialog(const Faults& faults) {
        setWindowTitle(u"Planted"_s);
        auto* name = new QLineEdit(u"name"_s);
        auto* place = new QLineEdit(u"place"_s);
        if (!faults.nameless) {
            name->setAccessibleName(u"Name"_s);
            place->setAccessibleName(u"Place"_s);
        }
        auto* label = new QLabel(u"A label that says what the fields are"_s);
        if (faults.cut)
            label->setFixedWidth(80);
        auto* painted = new PaintedControl(u"Painted"_s, faults.hover, !faults.ringless);
        auto* list = new QListWidget;
        list->setAccessibleName(u"List"_s);
        list->setMinimumHeight(80);
        if (faults.blanking)
            list->setItemDelegate(new BlankingDelegate(list));
        if (!faults.empty)
            list->addItems({u"First"_s, u"Second"_s});
        auto* ok = new QPushButton(u"OK"_s);
        ok->setAutoDefault(!faults.noDefault);
        ok->setDefault(!faults.noDefault);
        auto* column = new QVBoxLayout(this);
        for (QWidget* part : std::initializer_list<QWidget*>{label, name, place, painted, list, ok})
            column->addWidget(part);
        if (faults.jump)
            setTabOrder(place, name);
        show();
        activateWindow();
        if (faults.overlap) {
            column->activate();
            column->setEnabled(false);
            ok->move(ok->x(), list->y() + 10);
        }
    }
};

} // namespace

class SweepTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { ApplyLook(*qApp); }

    void reportsPlantedFaults_data() {
        const Columns<Faults, QString> row("faults", "reported");
        row("none", {}, "");
        row("ink that goes under the pointer", {.hover = true}, "ink");
        row("a label that is cut", {.cut = true}, "fit");
        row("fields without a name", {.nameless = true}, "name");
        row("a tab order that jumps", {.jump = true}, "tab order");
        row("no ring", {.ringless = true}, "focus");
        row("an overlap", {.overlap = true}, "overlap");
        row("no default button", {.noDefault = true}, "default");
        row("an empty list", {.empty = true}, "words");
        row("rows that go when the pointer rests on one", {.blanking = true}, "ink");
    }

    void reportsPlantedFaults() {
        const auto [faults] = Fetched<Faults>();
        PlantedDialog dialog(faults);
        QVERIFY(QTest::qWaitForWindowActive(&dialog));
        QStringList rules;
        QStringList lines;
        for (const SweepFind& find : SweepWindow(dialog, Sweeps::Everything)) {
            const QString rule = SweepRuleName(find.rule);
            lines.append(rule + u": "_s + find.path + u": "_s + find.why);
            if (!rules.contains(rule))
                rules.append(rule);
        }
        QFETCH(QString, reported);
        QVERIFY2(rules.join(u' ') == reported, qPrintable(lines.join(u'\n')));
    }

    void reportsStepsThatAreCut_data() {
        const Columns<QString, int, bool> row("title", "height", "cut");
        row("Login Information For Virtual Directory", 120, false);
        row("Login Information For Virtual Directory", 80, true);
        row("Loginpageforvirtualdirectories", 120, true);
    }

    void reportsStepsThatAreCut() {
        const auto [title, height, cut] = Fetched<QString, int, bool>();
        WizardSteps steps(u"Wizard"_s);
        steps.SetSteps({{title, WizardTravel::Mark::Now}});
        steps.resize(steps.width(), height);
        QCOMPARE(!SweepWindow(steps, SweepRule::Fit).empty(), cut);
    }
};

BTASK_TEST(SweepTest);
#include "SweepTest.moc"
