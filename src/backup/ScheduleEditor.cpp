#include "backup/ScheduleEditor.h"

#include "look/Look.h"
#include "plan/NextRuns.h"
#include "wizard/Form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QTimeEdit>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>

using namespace Qt::Literals::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr int ShownRuns = 3;
constexpr auto ClockPeriod = 10s;

QLabel* MakeLine(Look::TextSize size, const QColor& ink) {
    auto* line = new QLabel;
    line->setTextFormat(Qt::PlainText);
    line->setWordWrap(true);
    line->setFont(Look::Font(size));
    Look::SetInk(*line, ink);
    return line;
}

/// Boxes side by side, in shorter words where there is no room for their own.
class BoxRow : public QWidget {
public:
    struct Box {
        QCheckBox* box;
        QString text;
        QString shorter;
    };

    explicit BoxRow(std::vector<Box> boxes) : m_boxes(std::move(boxes)) {
        auto* row = new QHBoxLayout(this);
        row->setContentsMargins(0, 0, 0, 0);
        row->setSpacing(4);
        for (const Box& each : m_boxes) {
            each.box->setAccessibleName(each.text);
            row->addWidget(each.box);
        }
        row->addStretch();
        Write(true);
        m_least = layout()->sizeHint().width();
        Write(false);
        m_whole = layout()->sizeHint().width();
    }

    QSize sizeHint() const override { return {m_whole, layout()->sizeHint().height()}; }
    QSize minimumSizeHint() const override { return {m_least, layout()->sizeHint().height()}; }

protected:
    void resizeEvent(QResizeEvent* event) override {
        QWidget::resizeEvent(event);
        Write(width() < m_whole);
    }

private:
    void Write(bool shorter) {
        for (const Box& each : m_boxes)
            each.box->setText(shorter ? each.shorter : each.text);
        updateGeometry();
    }

    std::vector<Box> m_boxes;
    int m_least = 0; ///< widths
    int m_whole = 0;
};

} // namespace

ScheduleEditor::ScheduleEditor(ScheduleForm form, const QTimeZone& zone)
    : m_kind(form), m_zone(zone), m_form(new Form), m_mode(new QComboBox),
      m_description(MakeLine(Look::Small, Look::Secondary)), m_date(MakeDateField()), m_time(MakeTimeField()),
      m_weekdays(MakeWeekdays()) {
    for (const ScheduleMode mode : ModesOf(form))
        m_mode->addItem(ModeChoice(form, mode), static_cast<int>(mode));
    m_date->setDateRange(FirstScheduleDate, LastScheduleDate);
    m_form->Add(tr("&Schedule"), m_mode);
    m_form->AddWide(m_description);
    m_form->Add(tr("Start &Date:"), m_date);
    m_form->Add(tr("Start &Time:"), m_time);
    m_form->AddWide(m_weekdays);
    if (const QString text = BoxText(form); !text.isEmpty())
        AddBox(text);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(Look::TextInset);
    column->addWidget(m_form);
    column->addWidget(MakeRuns());
    column->addStretch();
    connect(m_form, &Form::Edited, this, [this] {
        ShowMode();
        emit Edited();
    });
    m_clock.setInterval(ClockPeriod);
    connect(&m_clock, &QTimer::timeout, this, &ScheduleEditor::ShowRuns);
    SetSchedule(DefaultSchedule(form, QDateTime::currentDateTime()));
}

QWidget* ScheduleEditor::MakeWeekdays() {
    const std::pair<QString, QString> names[] = {{tr("Sunday"), tr("Sun")},   {tr("Monday"), tr("Mon")},
                                                 {tr("Tuesday"), tr("Tue")},  {tr("Wednesday"), tr("Wed")},
                                                 {tr("Thursday"), tr("Thu")}, {tr("Friday"), tr("Fri")},
                                                 {tr("Saturday"), tr("Sat")}};
    std::vector<BoxRow::Box> boxes;
    for (const auto& [name, shorter] : names) {
        boxes.push_back({new QCheckBox, name, shorter});
        QCheckBox* box = boxes.back().box;
        box->setFont(Look::Font(Look::Small));
        m_days[boxes.size() - 1] = box;
        connect(box, &QCheckBox::toggled, this, [this] {
            ShowRuns();
            emit Edited();
        });
    }
    auto* row = new BoxRow(std::move(boxes));
    row->setAccessibleName(tr("Weekdays"));
    return row;
}

void ScheduleEditor::AddBox(const QString& text) {
    m_box = new QCheckBox;
    QString inTwoLines = text;
    if (const qsizetype at = text.indexOf(" ("_L1); at > 0)
        inTwoLines[at] = u'\n';
    m_form->AddWide(new BoxRow({{m_box, text, inTwoLines}}));
    connect(m_box, &QCheckBox::toggled, this, &ScheduleEditor::Edited);
}

QWidget* ScheduleEditor::MakeRuns() {
    m_runs = new QWidget;
    auto* column = new QVBoxLayout(m_runs);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3);
    auto* title = MakeLine(Look::Small, Look::Ink);
    title->setText(tr("Next runs"));
    title->setFont(Look::Font(Look::Small, QFont::Bold));
    m_noRuns = MakeLine(Look::Small, Look::Secondary);
    column->addWidget(title);
    column->addWidget(m_noRuns);
    for (int run = 0; run < ShownRuns; ++run) {
        m_runLines.push_back({MakeLine(Look::Small, Look::Ink), MakeLine(Look::Caption, Look::Paused)});
        column->addWidget(m_runLines.back().when);
        column->addWidget(m_runLines.back().remark);
    }
    return m_runs;
}

void ScheduleEditor::SetSchedule(const BackupSchedule& schedule) {
    m_mode->setCurrentIndex(std::max(0, m_mode->findData(static_cast<int>(schedule.mode))));
    if (schedule.date.isValid())
        m_date->setDate(schedule.date);
    if (schedule.time.isValid())
        m_time->setTime(schedule.time);
    for (std::size_t day = 0; day < m_days.size(); ++day)
        m_days[day]->setChecked(schedule.weekdays[day]);
    if (m_box)
        m_box->setChecked(schedule.box);
    ShowMode();
}

BackupSchedule ScheduleEditor::Schedule() const {
    BackupSchedule schedule;
    schedule.mode = static_cast<ScheduleMode>(m_mode->currentData().toInt());
    schedule.date = m_date->date();
    const QTime time = m_time->time();
    schedule.time = QTime(time.hour(), time.minute(), time.second());
    for (std::size_t day = 0; day < m_days.size(); ++day)
        schedule.weekdays[day] = m_days[day]->isChecked();
    schedule.box = m_box && m_box->isChecked();
    return schedule;
}

void ScheduleEditor::FocusWeekdays() {
    m_days.front()->setFocus();
}

void ScheduleEditor::ShowMode() {
    const ScheduleMode mode = Schedule().mode;
    const bool starts = mode != ScheduleMode::Continuous;
    m_description->setText(ModeDescription(m_kind, mode));
    m_form->SetRowShown(*m_date, starts);
    m_form->SetRowShown(*m_time, starts);
    m_weekdays->setVisible(mode == ScheduleMode::Weekdays);
    m_runs->setVisible(starts);
    ShowRuns();
}

void ScheduleEditor::ShowRuns() {
    const QDateTime now = QDateTime::currentDateTimeUtc();
    const auto runs = NextRuns(Schedule(), now, m_zone, ShownRuns);
    const bool noDay =
        Schedule().mode == ScheduleMode::Weekdays &&
        std::none_of(m_days.begin(), m_days.end(), [](const QCheckBox* day) { return day->isChecked(); });
    m_noRuns->setText(noDay ? tr("None: no weekday is ticked.") : tr("None."));
    m_noRuns->setVisible(runs.empty());
    for (std::size_t line = 0; line < m_runLines.size(); ++line)
        ShowRun(m_runLines[line], line < runs.size() ? runs[line] : PlannedRun(), now);
}

void ScheduleEditor::ShowRun(const RunLines& lines, const PlannedRun& run, const QDateTime& now) {
    const QLocale locale = lines.when->locale();
    if (run.date.isValid())
        lines.when->setText(tr("%1 %2, %3 (%4)")
                                .arg(locale.dayName(run.date.dayOfWeek(), QLocale::ShortFormat),
                                     locale.toString(run.date, DateForm(locale)),
                                     locale.toString(run.time, TimeForm(locale)), TimeUntil(now, run.at)));
    lines.when->setVisible(run.date.isValid());
    lines.remark->setText(ClockRemark(run.clock));
    lines.remark->setVisible(run.clock != PlannedRun::Clock::Plain);
}

void ScheduleEditor::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    ShowRuns();
    m_clock.start();
}

void ScheduleEditor::hideEvent(QHideEvent* event) {
    QWidget::hideEvent(event);
    m_clock.stop();
}
