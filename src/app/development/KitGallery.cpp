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
    {"Button", [](UserPrompts&) -> QWidget* { return new QPushButton(QStringLiteral("Browse...")); }},
    {"Main button",
     [](UserPrompts&) -> QWidget* {
         auto* button = new QPushButton(QStringLiteral("Next"));
         button->setAutoDefault(true);
         button->setDefault(true);
         return button;
     }},
    {"Text", [](UserPrompts&) -> QWidget* { return new QLineEdit(QStringLiteral("desk-07")); }},
    {"Password",
     [](UserPrompts&) -> QWidget* {
         auto* field = new PasswordField;
         field->SetText(QStringLiteral("secret"));
         return field;
     }},
    {"Path",
     [](UserPrompts& prompts) -> QWidget* {
         auto* field = new PathField(prompts, {PickKind::Folder, QStringLiteral("Folder")});
         field->SetPath(QStringLiteral("/home"));
         return field;
     }},
    {"Choice",
     [](UserPrompts&) -> QWidget* {
         auto* choice = new QComboBox;
         choice->addItems({QStringLiteral("Daily"), QStringLiteral("Custom")});
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
    {"Box", [](UserPrompts&) -> QWidget* { return Set(new QCheckBox(QStringLiteral("Encrypt")), true); }},
    {"Radio", [](UserPrompts&) -> QWidget* { return Set(new QRadioButton(QStringLiteral("Daily")), true); }},
    {"Progress",
     [](UserPrompts&) -> QWidget* {
         auto* bar = new WorkBar;
         bar->SetProgress({2, 5, {}});
         return bar;
     }},
    {"Several lines",
     [](UserPrompts&) -> QWidget* {
         auto* lines = new QPlainTextEdit(QStringLiteral("Backup To:\n/Home/Backup"));
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
    const QStringList states{{},
                             QStringLiteral("Plain"),
                             QStringLiteral("Hovered"),
                             QStringLiteral("Focused"),
                             QStringLiteral("Disabled")};
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

    auto* form = new CForm;
    auto* name =
        form->Add(QStringLiteral("&Name"), new QLineEdit, CForm::Need::Required,
                  QStringLiteral("Letters, digits and spaces. It stands in the list of the cloud drive, and "
                                 "cannot be changed while a task uses it, however long this remark is."));
    name->setPlaceholderText(QStringLiteral("As in \"Northwind\""));
    form->Add(QStringLiteral("&Password"), new PasswordField, CForm::Need::Required);
    form->Add(QStringLiteral("&Folder"),
              new PathField(prompts, {PickKind::Folder, QStringLiteral("Folder")}));
    form->Add(QStringLiteral("A label that is as long as a provider may choose it for its field"),
              new QLineEdit(QString(40, u'W') + QStringLiteral(" a text longer than its field")));
    form->Add(QStringLiteral("Start &Date"), MakeDateField());
    form->Add(QStringLiteral("Start &Time"), MakeTimeField());
    auto* later = new QLineEdit(QStringLiteral("\u05D2\u05D9\u05D1\u05D5\u05D9 2026"));
    later->setLayoutDirection(Qt::RightToLeft);
    form->Add(QStringLiteral("\u05E9\u05DD"), later, CForm::Need::Optional,
              QStringLiteral("\u05D4\u05E2\u05E8\u05D4 (a remark)"));
    column->addWidget(form);

    auto* group = new QGroupBox(QStringLiteral("A group"));
    auto* inner = new QHBoxLayout(group);
    inner->addWidget(new QCheckBox(QStringLiteral("Sunday")));
    inner->addWidget(new QCheckBox(QStringLiteral("A box whose words are rather long")));
    inner->addWidget(new WorkBar);
    column->addWidget(group);

    auto* types = new CCheckList(QStringLiteral("File types"),
                                 {{QStringLiteral("File Type"), 200}, {QStringLiteral("Extensions"), 350}});
    types->AddRow({QStringLiteral("All Files"), {}}, true);
    types->AddRow({QStringLiteral("Document Files "), QStringLiteral(".txt, .html, .htm, .log, .doc")},
                  false);
    types->AddRow({QStringLiteral("\u05EA\u05DE\u05D5\u05E0\u05D5\u05EA"), QStringLiteral(".jpg, .bmp")},
                  true);
    types->setCurrentItem(types->topLevelItem(1));
    types->setFixedHeight(112);
    column->addWidget(types);
    column->addStretch();
    return sheet;
}

QWidget* MakeGridGallery(UserPrompts& prompts) {
    auto* grid = new CBrenPropertyGrid(prompts);
    CPropertyGroup* general = grid->AddGroup(QStringLiteral("General"));
    using Type = ServiceClient::ValueType;
    general->AddRow({QStringLiteral("Enabled"), QStringLiteral("True"), QStringLiteral("Enabled"),
                     Type::Boolean, QStringLiteral("A row with a hint")});
    general->AddRow(
        {QStringLiteral("Threads"), QStringLiteral("4"), QStringLiteral("Threads"), Type::Integer, {}});
    general->AddRow({QStringLiteral("Read only"),
                     QStringLiteral("not read"),
                     QStringLiteral("ReadOnly"),
                     Type::String,
                     {},
                     true});
    general->AddRow({QStringLiteral("A label that is longer than the room that it has in its column"),
                     QString(200, u'x'),
                     QStringLiteral("Long"),
                     Type::String,
                     {}});
    CPropertyGroup* other = grid->AddGroup(QStringLiteral("\u05D4\u05D2\u05D3\u05E8\u05D5\u05EA"));
    other->AddRow({QStringLiteral("\u05E9\u05DD"),
                   QStringLiteral("\u05D2\u05D9\u05D1\u05D5\u05D9"),
                   QStringLiteral("Name"),
                   Type::String,
                   {}});
    general->SelectRow(1);
    return grid;
}
