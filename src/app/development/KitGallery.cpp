#include "development/KitGallery.h"

#include "grid/BrenPropertyGrid.h"
#include "lanes/ProgressNote.h"
#include "look/ConsoleStyle.h"
#include "look/Look.h"
#include "page/PasswordField.h"
#include "page/UserPrompts.h"
#include "page/WorkBar.h"
#include "wizard/CheckList.h"
#include "wizard/Form.h"
#include "wizard/PathField.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTimeEdit>

using namespace Qt::Literals::StringLiterals;

namespace {

/// Draws a control as if the pointer were over it, or the focus in it.
class StateStyle : public ConsoleStyle {
public:
    explicit StateStyle(State forced) : m_forced(forced) {}

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        Force(option);
        ConsoleStyle::drawPrimitive(element, option, painter, widget);
    }
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        Force(option);
        ConsoleStyle::drawControl(element, option, painter, widget);
    }
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override {
        Force(option);
        ConsoleStyle::drawComplexControl(control, option, painter, widget);
    }

private:
    void Force(const QStyleOption* option) const { const_cast<QStyleOption*>(option)->state |= m_forced; }

    State m_forced;
};

struct Kind {
    const char* name;
    QWidget* (*make)(UserPrompts& prompts);
};

template <typename Button>
Button* Set(Button* button, bool on) {
    button->setChecked(on);
    return button;
}

constexpr Kind Kinds[] = {
    {"Button", [](UserPrompts&) -> QWidget* { return new QPushButton(u"Browse..."_s); }},
    {"Main button",
     [](UserPrompts&) -> QWidget* {
         auto* button = new QPushButton(u"Next"_s);
         button->setAutoDefault(true);
         button->setDefault(true);
         return button;
     }},
    {"Text", [](UserPrompts&) -> QWidget* { return new QLineEdit(u"desk-07"_s); }},
    {"Password",
     [](UserPrompts&) -> QWidget* {
         auto* field = new PasswordField;
         field->SetText(u"secret"_s);
         return field;
     }},
    {"Path",
     [](UserPrompts& prompts) -> QWidget* {
         auto* field = new PathField(prompts, {PickKind::Folder, u"Folder"_s});
         field->SetPath(u"/home"_s);
         return field;
     }},
    {"Choice",
     [](UserPrompts&) -> QWidget* {
         auto* choice = new QComboBox;
         choice->addItems({u"Daily"_s, u"Custom"_s});
         return choice;
     }},
    {"Number",
     [](UserPrompts&) -> QWidget* {
         auto* number = new QSpinBox;
         number->setValue(10);
         return number;
     }},
    {"Date", [](UserPrompts&) -> QWidget* { return MakeDateField(); }},
    {"Time", [](UserPrompts&) -> QWidget* { return MakeTimeField(); }},
    {"Box", [](UserPrompts&) -> QWidget* { return Set(new QCheckBox(u"Encrypt"_s), true); }},
    {"Radio", [](UserPrompts&) -> QWidget* { return Set(new QRadioButton(u"Daily"_s), true); }},
    {"Progress",
     [](UserPrompts&) -> QWidget* {
         auto* bar = new WorkBar;
         bar->SetProgress({2, 5, {}});
         return bar;
     }},
    {"Several lines",
     [](UserPrompts&) -> QWidget* {
         auto* lines = new QPlainTextEdit(u"Backup To:\n/Home/Backup"_s);
         lines->setFixedHeight(52);
         return lines;
     }},
};

QLabel* Caption(const QString& text) {
    auto* label = new QLabel(text);
    label->setFont(Look::Font(Look::Caption, QFont::Bold));
    return label;
}

void ForceState(QWidget& widget, QStyle::State state) {
    auto* style = new StateStyle(state);
    style->setParent(&widget);
    widget.setStyle(style);
    for (QWidget* part : widget.findChildren<QWidget*>())
        part->setStyle(style);
}

} // namespace

QWidget* MakeFieldGallery(UserPrompts& prompts) {
    auto* sheet = new QWidget;
    auto* grid = new QGridLayout(sheet);
    grid->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    grid->setVerticalSpacing(6);
    grid->setHorizontalSpacing(8);
    const QStringList states{{}, u"Plain"_s, u"Hovered"_s, u"Focused"_s, u"Disabled"_s};
    for (int column = 1; column < states.size(); ++column) {
        grid->addWidget(Caption(states.at(column)), 0, column);
        grid->setColumnStretch(column, 1);
    }
    int row = 1;
    for (const Kind& kind : Kinds) {
        grid->addWidget(Caption(QString::fromLatin1(kind.name)), row, 0);
        for (int column = 1; column < states.size(); ++column) {
            QWidget* field = kind.make(prompts);
            field->setAccessibleName(QString::fromLatin1(kind.name));
            if (column == 2)
                ForceState(*field, QStyle::State_MouseOver);
            else if (column == 3)
                ForceState(*field, QStyle::State_HasFocus | QStyle::State_KeyboardFocusChange);
            field->setEnabled(column != 4);
            grid->addWidget(field, row, column);
        }
        ++row;
    }
    grid->setRowStretch(row, 1);
    return sheet;
}

QWidget* MakeFormGallery(UserPrompts& prompts) {
    auto* sheet = new QWidget;
    auto* column = new QVBoxLayout(sheet);
    column->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    column->setSpacing(Look::TextInset);

    auto* form = new Form;
    auto* name = form->Add(u"&Name"_s, new QLineEdit, Form::Need::Required,
                           u"Letters, digits and spaces. It stands in the list of the cloud drive, and "
                           "cannot be changed while a task uses it, however long this remark is."_s);
    name->setPlaceholderText(u"As in \"Northwind\""_s);
    form->Add(u"&Password"_s, new PasswordField, Form::Need::Required);
    form->Add(u"&Folder"_s, new PathField(prompts, {PickKind::Folder, u"Folder"_s}));
    form->Add(u"A label that is as long as a provider may choose it for its field"_s,
              new QLineEdit(QString(40, u'W') + u" a text longer than its field"_s));
    form->Add(u"Start &Date"_s, MakeDateField());
    form->Add(u"Start &Time"_s, MakeTimeField());
    auto* later = new QLineEdit(u"\u05D2\u05D9\u05D1\u05D5\u05D9 2026"_s);
    later->setLayoutDirection(Qt::RightToLeft);
    form->Add(u"\u05E9\u05DD"_s, later, Form::Need::Optional, u"\u05D4\u05E2\u05E8\u05D4 (a remark)"_s);
    column->addWidget(form);

    auto* group = new QGroupBox(u"A group"_s);
    auto* inner = new QHBoxLayout(group);
    inner->addWidget(new QCheckBox(u"Sunday"_s));
    inner->addWidget(new QCheckBox(u"A box whose words are rather long"_s));
    inner->addWidget(new WorkBar);
    column->addWidget(group);

    auto* types = new CheckList(u"File types"_s, {{u"File Type"_s, 200}, {u"Extensions"_s, 350}});
    types->AddRow({u"All Files"_s, {}}, true);
    types->AddRow({u"Document Files "_s, u".txt, .html, .htm, .log, .doc"_s}, false);
    types->AddRow({u"\u05EA\u05DE\u05D5\u05E0\u05D5\u05EA"_s, u".jpg, .bmp"_s}, true);
    types->setCurrentItem(types->topLevelItem(1));
    types->setFixedHeight(112);
    column->addWidget(types);
    column->addStretch();
    return sheet;
}

QWidget* MakeGridGallery(UserPrompts& prompts) {
    auto* grid = new CBrenPropertyGrid(prompts);
    CPropertyGroup* general = grid->AddGroup(u"General"_s);
    using Type = PropertyType;
    general->AddRow({u"Enabled"_s, u"True"_s, u"Enabled"_s, Type::Boolean, u"A row with a hint"_s});
    general->AddRow({u"Threads"_s, u"4"_s, u"Threads"_s, Type::Integer, {}});
    general->AddRow({u"Read only"_s, u"not read"_s, u"ReadOnly"_s, Type::Text, {}, true});
    general->AddRow({u"A label that is longer than the room that it has in its column"_s,
                     QString(200, u'x'),
                     u"Long"_s,
                     Type::Text,
                     {}});
    for (const PropertyMark mark : {PropertyMark::Reading, PropertyMark::NotRead, PropertyMark::NotSaved})
        general->AddRow({u"Limit (KB/S)"_s,
                         mark == PropertyMark::Reading ? QString() : u"500"_s,
                         u"Limit"_s,
                         Type::Integer,
                         {},
                         mark == PropertyMark::Reading,
                         mark});
    CPropertyGroup* other = grid->AddGroup(u"\u05D4\u05D2\u05D3\u05E8\u05D5\u05EA"_s);
    other->AddRow({u"\u05E9\u05DD"_s, u"\u05D2\u05D9\u05D1\u05D5\u05D9"_s, u"Name"_s, Type::Text, {}});
    general->SelectRow(1);
    return grid;
}
