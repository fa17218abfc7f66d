#include "wizard/Form.h"

#include "look/Look.h"
#include "page/PasswordField.h"
#include "wizard/PathField.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QTimeEdit>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int CalendarArrow = 20; ///< which the toolkit leaves out of a date's width

} // namespace

Form::Form(QWidget* parent) : QWidget(parent), m_layout(new QFormLayout(this)) {
    m_layout->setContentsMargins(0, 0, 0, 0);
    m_layout->setHorizontalSpacing(Look::TextInset);
    m_layout->setVerticalSpacing(10);
    m_layout->setFieldGrowthPolicy(QFormLayout::ExpandingFieldsGrow);
    m_layout->setLabelAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_layout->setRowWrapPolicy(QFormLayout::WrapLongRows);
}

QString Form::PlainLabel(const QString& text) {
    return QString(text).replace(u'&', "&&"_L1);
}

void Form::AddRow(const QString& label, QWidget* field, Need need, const QString& remark) {
    auto* body = new QWidget;
    auto* column = new QVBoxLayout(body);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(3);
    column->addWidget(field);
    auto* below = new QLabel;
    below->setTextFormat(Qt::PlainText);
    below->setWordWrap(true);
    below->setFont(Look::Font(Look::Caption));
    Look::SetInk(*below, Look::Muted);
    column->addWidget(below);

    auto* name = new QLabel(need == Need::Required ? label + u" *"_s : label);
    name->setTextFormat(Qt::PlainText);
    name->setBuddy(field);
    name->setAlignment(Qt::AlignTop | Qt::AlignLeft); // beside the field, also where a remark stands below it
    name->setContentsMargins(0, (field->sizeHint().height() - name->fontMetrics().height()) / 2, 0, 0);
    m_layout->addRow(name, body);
    m_rows.push_back({field, body, below});

    QString spoken = label;
    spoken.replace("&&"_L1, "\n"_L1).remove(u'&').replace(u'\n', u'&');
    QWidget* named = field->focusProxy() ? field->focusProxy() : field;
    named->setAccessibleName(need == Need::Required ? tr("%1, required").arg(spoken) : spoken);
    SetRemark(*field, remark);
    Watch(field);
}

void Form::AddWide(QWidget* widget) {
    m_layout->addRow(widget);
    Watch(widget);
}

void Form::Watch(QWidget* field) {
    if (auto* path = qobject_cast<PathField*>(field))
        connect(path, &PathField::PathChanged, this, &Form::Edited);
    else if (auto* password = qobject_cast<PasswordField*>(field))
        connect(password, &PasswordField::TextChanged, this, &Form::Edited);
    else if (auto* text = qobject_cast<QLineEdit*>(field))
        connect(text, &QLineEdit::textChanged, this, &Form::Edited);
    else if (auto* number = qobject_cast<QSpinBox*>(field))
        connect(number, &QSpinBox::valueChanged, this, &Form::Edited);
    else if (auto* time = qobject_cast<QDateTimeEdit*>(field))
        connect(time, &QDateTimeEdit::dateTimeChanged, this, &Form::Edited);
    else if (auto* choice = qobject_cast<QComboBox*>(field))
        connect(choice, &QComboBox::currentTextChanged, this, &Form::Edited);
    else if (auto* box = qobject_cast<QAbstractButton*>(field))
        connect(box, &QAbstractButton::toggled, this, &Form::Edited);
    else if (auto* lines = qobject_cast<QPlainTextEdit*>(field)) {
        lines->setTabChangesFocus(true);
        connect(lines, &QPlainTextEdit::textChanged, this, &Form::Edited);
    }
}

const Form::Row& Form::RowOf(const QWidget& field) const {
    return *std::find_if(m_rows.begin(), m_rows.end(),
                         [&field](const Row& row) { return row.field == &field; });
}

void Form::SetRemark(const QWidget& field, const QString& remark) {
    const Row& row = RowOf(field);
    row.remark->setText(remark);
    row.remark->setVisible(!remark.isEmpty());
    QWidget* described = field.focusProxy() ? field.focusProxy() : row.field;
    described->setAccessibleDescription(remark);
}

void Form::SetRowShown(QWidget& field, bool shown) {
    QWidget* body = RowOf(field).body;
    body->setVisible(shown);
    m_layout->labelForField(body)->setVisible(shown);
}

QString DateForm(const QLocale& locale) {
    QString form = locale.dateFormat(QLocale::ShortFormat);
    return form.contains("yyyy"_L1) ? form : form.replace("yy"_L1, "yyyy"_L1);
}

QString TimeForm(const QLocale& locale) {
    QString form = locale.timeFormat(QLocale::LongFormat);
    form.remove(u't'); // the time zone, which is always the computer's
    return form.simplified();
}

QDateEdit* MakeDateField() {
    auto* field = new QDateEdit;
    field->setTimeSpec(Qt::UTC);
    field->setDate(QDate::currentDate());
    field->setDisplayFormat(DateForm(field->locale()));
    field->setCalendarPopup(true);
    field->setMinimumWidth(field->sizeHint().width() + CalendarArrow);
    return field;
}

QTimeEdit* MakeTimeField() {
    auto* field = new QTimeEdit;
    field->setTimeSpec(Qt::UTC);
    field->setTime(QTime::currentTime());
    field->setDisplayFormat(TimeForm(field->locale()));
    return field;
}
