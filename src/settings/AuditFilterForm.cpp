#include "settings/AuditFilterForm.h"

#include "look/Look.h"
#include "page/StateFile.h"
#include "wizard/Form.h"

#include <QCheckBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSettings>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int MaximumWidth = 80;
constexpr int Gap = 8;
constexpr int Indent = 20; ///< of what belongs to the box above
constexpr int SecondsOfDay = 24 * 60 * 60;

// What is kept, in a group of its own.
const QString Group = u"AuditTrace"_s;
const QString ContainingKey = u"Containing"_s;
const QString TextKey = u"Text"_s;
const QString BetweenKey = u"Between"_s;
const QString FromKey = u"From"_s;
const QString ToKey = u"To"_s;
const QString LastDayKey = u"LastDay"_s;
const QString MaximumKey = u"Maximum"_s;

void SetDay(QDateEdit& field, const QString& text) {
    const QDate day = QDate::fromString(text, Qt::ISODate);
    if (day.isValid())
        field.setDate(day);
}

} // namespace

AuditFilterForm::AuditFilterForm()
    : m_containing(new QCheckBox(tr("Only Show Traces Containing"))), m_text(new QLineEdit),
      m_between(new QCheckBox(tr("Only Show Traces Between"))), m_from(MakeDateField()),
      m_to(MakeDateField()), m_lastDay(new QCheckBox(tr("Only Show Traces of the Last 24 Hours"))),
      m_given(new QCheckBox), m_maximum(new QLineEdit(u"200"_s)), m_query(new QPushButton) {
    m_text->setAccessibleName(tr("Text that traces contain"));
    m_from->setAccessibleName(tr("From the start of this day"));
    m_to->setAccessibleName(tr("To the start of this day"));
    m_to->setToolTip(tr("The day itself is left out. The same day in both fields: all since it began."));
    m_from->setDate(QDate::currentDate().addDays(-1));
    m_maximum->setFixedWidth(MaximumWidth);
    m_given->hide();
    LayOut();
    Recall();
    SetRunning(false);
    // Whoever fills a field means it.
    connect(m_text, &QLineEdit::textEdited, m_containing,
            [this](const QString& text) { m_containing->setChecked(!text.isEmpty()); });
    for (const QDateEdit* day : {m_from, m_to})
        connect(day, &QDateEdit::userDateChanged, m_between, [this] { m_between->setChecked(true); });
    for (QCheckBox* period : {m_between, m_lastDay, m_given})
        connect(period, &QCheckBox::toggled, this, [this, period](bool chosen) { Choose(period, chosen); });
    connect(m_query, &QPushButton::clicked, this, [this] {
        if (m_running)
            emit StopWanted();
        else
            emit QueryWanted();
    });
}

void AuditFilterForm::LayOut() {
    auto* days = new QHBoxLayout;
    days->setSpacing(Gap);
    days->setContentsMargins(Indent, 0, 0, 0);
    days->addWidget(m_from);
    days->addWidget(new QLabel(tr("and")));
    days->addWidget(m_to);
    days->addStretch();
    auto* count = new QHBoxLayout;
    count->setSpacing(Gap);
    auto* label = new QLabel(tr("Maximum Traces to Show (0-Limited)"));
    label->setBuddy(m_maximum);
    m_maximum->setAccessibleName(tr("Maximum Traces to Show (0-Limited)"));
    count->addWidget(label);
    count->addWidget(m_maximum);
    count->addStretch();
    count->addWidget(m_query);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setVerticalSpacing(4);
    grid->addWidget(m_containing, 0, 0);
    grid->addWidget(m_text, 0, 1);
    grid->addWidget(m_between, 1, 0, 1, 2);
    grid->addLayout(days, 2, 0, 1, 2); // beside its box there is no room for it in a small window
    grid->addWidget(m_lastDay, 3, 0, 1, 2);
    grid->addWidget(m_given, 4, 0, 1, 2);
    grid->addLayout(count, 5, 0, 1, 2);
    for (QWidget* part : findChildren<QWidget*>())
        part->setFont(Look::Font(Look::Small));
}

/// One choice of times leaves no other.
void AuditFilterForm::Choose(const QCheckBox* period, bool chosen) {
    for (QCheckBox* other : {m_between, m_lastDay, m_given})
        if (chosen && other != period)
            other->setChecked(false);
}

AuditFilter AuditFilterForm::Filter() const {
    AuditFilter filter;
    if (m_containing->isChecked())
        filter.containing = m_text->text();
    if (m_between->isChecked())
        filter.between = std::pair(AuditTime(m_from->date()), AuditTime(m_to->date()));
    if (m_lastDay->isChecked()) {
        const QString since = AuditTime(QDateTime::currentDateTime().addSecs(-SecondsOfDay));
        filter.between = std::pair(since, since);
    }
    if (m_given->isChecked())
        filter.between = m_times;
    filter.maximum = m_maximum->text();
    return filter;
}

void AuditFilterForm::AskForTimes(const QString& from, const QString& to) {
    m_times = {from, to};
    m_given->setText(tr("Only Show Traces from %1 to %2").arg(from, to));
    m_given->show();
    m_given->setChecked(true);
    m_containing->setChecked(false);
}

void AuditFilterForm::Remember() const {
    if (m_given->isChecked())
        return;
    QSettings state(StateFile(), QSettings::IniFormat);
    state.beginGroup(Group);
    state.setValue(ContainingKey, m_containing->isChecked());
    state.setValue(TextKey, m_text->text());
    state.setValue(BetweenKey, m_between->isChecked());
    state.setValue(FromKey, m_from->date().toString(Qt::ISODate));
    state.setValue(ToKey, m_to->date().toString(Qt::ISODate));
    state.setValue(LastDayKey, m_lastDay->isChecked());
    state.setValue(MaximumKey, m_maximum->text());
}

void AuditFilterForm::Recall() {
    QSettings state(StateFile(), QSettings::IniFormat);
    state.beginGroup(Group);
    m_containing->setChecked(state.value(ContainingKey).toBool());
    m_text->setText(state.value(TextKey).toString());
    m_between->setChecked(state.value(BetweenKey).toBool());
    SetDay(*m_from, state.value(FromKey).toString());
    SetDay(*m_to, state.value(ToKey).toString());
    m_lastDay->setChecked(state.value(LastDayKey).toBool() && !m_between->isChecked());
    m_maximum->setText(state.value(MaximumKey, m_maximum->text()).toString());
}

void AuditFilterForm::SetRunning(bool running) {
    m_running = running;
    m_query->setText(running ? tr("Stop") : tr("Query"));
}

void AuditFilterForm::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter)
        QWidget::keyPressEvent(event);
    else if (!m_running && !event->isAutoRepeat())
        emit QueryWanted();
}
