#include "backup/FilterDialog.h"

#include "backup/CountView.h"
#include "look/Look.h"
#include "page/NoticeLine.h"
#include "wizard/CheckList.h"
#include "wizard/Form.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int NameWidth = 200;
constexpr int TypesWidth = 350;

/// Why the record cannot carry the text; empty when it can.
QString TextRefusal(const QString& text) {
    const auto holds = [&text](char16_t c) { return text.contains(QChar(c)); };
    if (holds(u'\t'))
        return FilterDialog::tr("A tab cannot be sent. Please take it out.");
    if (holds(u'\n') || holds(u'\r') || holds(u'\u2028') || holds(u'\u2029'))
        return FilterDialog::tr("A line feed cannot be sent. Please take it out.");
    return {};
}

QDialogButtonBox* MakeButtons(QDialog& dialog) {
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Ok)->setDefault(true);
    QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
    return buttons;
}

QLabel* MakeFigure() {
    auto* figure = new QLabel;
    figure->setTextFormat(Qt::PlainText);
    figure->setFont(Look::Font(Look::Caption));
    return figure;
}

void ShowFigure(QLabel& label, const BackupFigures& figures, BackupRule rule) {
    const FileTotals& leftOut = figures.LeftOut(rule);
    const auto effect = EffectOf(figures, leftOut);
    const bool isOdd = effect == RuleEffect::Nothing || effect == RuleEffect::Everything;
    label.setText(figures.IsInForce(rule) ? LeftOutText(figures, leftOut) : QString());
    Look::SetInk(label, isOdd ? Look::Paused : Look::Muted);
}

} // namespace

std::vector<FileTypeRow> FilterChoice::UsualRows() {
    // The names end in a blank, but for the first.
    return {{FilterDialog::tr("All Files"), {}, true},
            {FilterDialog::tr("Document Files "),
             u".txt, .html, .htm, .log, .doc, .xls, .ppt, .odt, .ods, .pdf, .rtf"_s},
            {FilterDialog::tr("Image Files "), u".jpg, .bmp, .gif, .png, .psd, .tif"_s},
            {FilterDialog::tr("Video Files "), u".avi, .asf, .mov, .mpg"_s},
            {FilterDialog::tr("Audio Files "), u".mp3, .mid, .ra, .wav, .aif, .iff, .m3u, .mpa, .ram"_s}};
}

BackupFilter FilterOf(const FilterChoice& choice) {
    QStringList types;
    bool isAll = false;
    for (const FileTypeRow& row : choice.rows) {
        if (row.ticked && row.types.isEmpty())
            isAll = true;
        else if (row.ticked)
            types.append(row.types);
    }
    return {isAll ? QString() : types.join(", "_L1), choice.excludesTypes ? choice.excludedTypes : QString(),
            choice.excludesFiles ? choice.excludedFiles : QString(), choice.skipSystem, choice.skipHidden};
}

FilterDialog::FilterDialog(const FilterChoice& choice, const BackupFigures& figures, QWidget* parent)
    : QDialog(parent), m_types(new CheckList(tr("File types"),
                                             {{tr("File Type"), NameWidth}, {tr("Extensions"), TypesWidth}})),
      m_typesLeftOut(MakeFigure()), m_notice(new NoticeLine) {
    setWindowTitle(tr("Backup Settings"));
    auto* unknown = MakeFigure();
    unknown->setText(UncertaintyText());
    unknown->setWordWrap(true);
    Look::SetInk(*unknown, Look::Muted);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(Look::TextInset);
    column->addLayout(MakeTypes(), 1);
    column->addLayout(MakeRules(choice));
    column->addWidget(unknown);
    column->addWidget(m_notice);
    column->addWidget(MakeButtons(*this));
    for (const FileTypeRow& row : choice.rows)
        AddType(row);
    ShowFigures(figures);
    resize(NameWidth + TypesWidth + 60, 480); // fits the small screens of dense displays
}

QLayout* FilterDialog::MakeTypes() {
    auto* add = new QPushButton(tr("&Add File Type..."));
    add->setAutoDefault(false);
    connect(add, &QPushButton::clicked, this, &FilterDialog::AskType);
    auto* below = new QHBoxLayout;
    below->addWidget(add);
    below->addWidget(m_typesLeftOut, 1);
    auto* column = new QVBoxLayout;
    column->setSpacing(8);
    column->addWidget(m_types, 1);
    column->addLayout(below);
    return column;
}

QLayout* FilterDialog::MakeRules(const FilterChoice& choice) {
    auto* grid = new QGridLayout;
    grid->setHorizontalSpacing(Look::TextInset);
    grid->setColumnStretch(1, 1);
    AddRule(*grid, BackupRule::ExcludedTypes, tr("Exclude file &types:"), choice.excludesTypes,
            &choice.excludedTypes);
    AddRule(*grid, BackupRule::ExcludedFiles, tr("Exclude &files:"), choice.excludesFiles,
            &choice.excludedFiles);
    AddRule(*grid, BackupRule::System, tr("Skip &system files"), choice.skipSystem, nullptr);
    AddRule(*grid, BackupRule::Hidden, tr("Skip &hidden files"), choice.skipHidden, nullptr);
    return grid;
}

void FilterDialog::AddRule(QGridLayout& grid, BackupRule rule, const QString& caption, bool ticked,
                           const QString* text) {
    const int row = grid.rowCount();
    const Rule added{rule, new QCheckBox(caption), text ? new QLineEdit(*text) : nullptr, MakeFigure()};
    added.box->setChecked(ticked);
    grid.addWidget(added.box, row, 0);
    if (added.text) {
        added.text->setAccessibleName(QString(caption).remove(u'&'));
        added.text->setEnabled(ticked);
        connect(added.box, &QCheckBox::toggled, added.text, &QWidget::setEnabled);
        grid.addWidget(added.text, row, 1);
    }
    grid.addWidget(added.leftOut, row, 2);
    m_rules.push_back(added);
}

const FilterDialog::Rule& FilterDialog::RuleOf(BackupRule rule) const {
    return *std::find_if(m_rules.begin(), m_rules.end(),
                         [rule](const Rule& each) { return each.rule == rule; });
}

void FilterDialog::AddType(const FileTypeRow& row) {
    m_rows.push_back(row);
    m_types->AddRow({row.name, row.types}, row.ticked);
}

void FilterDialog::AskType() {
    auto* dialog = new CAddFileType(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    connect(dialog, &QDialog::accepted, this, [this, dialog] {
        const FileTypeRow row = dialog->Row();
        if (!row.name.isEmpty() && !row.types.isEmpty())
            AddType(row);
    });
    dialog->open();
}

FilterChoice FilterDialog::Choice() const {
    using enum BackupRule;
    FilterChoice choice{m_rows,
                        RuleOf(ExcludedTypes).box->isChecked(),
                        RuleOf(ExcludedTypes).text->text(),
                        RuleOf(ExcludedFiles).box->isChecked(),
                        RuleOf(ExcludedFiles).text->text(),
                        RuleOf(System).box->isChecked(),
                        RuleOf(Hidden).box->isChecked()};
    for (std::size_t row = 0; row < choice.rows.size(); ++row)
        choice.rows[row].ticked = m_types->IsTicked(int(row));
    return choice;
}

void FilterDialog::ShowFigures(const BackupFigures& figures) {
    ShowFigure(*m_typesLeftOut, figures, BackupRule::Types);
    for (const Rule& rule : m_rules)
        ShowFigure(*rule.leftOut, figures, rule.rule);
}

void FilterDialog::Stay(const QString& why, QWidget* field) {
    m_notice->SetText(why);
    if (field)
        field->setFocus();
}

void FilterDialog::accept() {
    if (m_types->TickedRows().empty())
        return Stay(tr("Please select at least one file type to backup."), m_types);
    for (const Rule& rule : m_rules)
        if (const QString why = rule.text ? TextRefusal(rule.text->text()) : QString(); !why.isEmpty())
            return Stay(why, rule.text);
    QDialog::accept();
}

CAddFileType::CAddFileType(QWidget* parent)
    : QDialog(parent), m_name(new QLineEdit), m_types(new QLineEdit), m_notice(new NoticeLine) {
    setWindowTitle(tr("Add File Type"));
    m_types->setPlaceholderText(u".txt, .html"_s);
    auto* form = new Form;
    form->Add(tr("&Name"), m_name, Form::Need::Required);
    form->Add(tr("&Extensions"), m_types, Form::Need::Required,
              tr("With their dots, separated by commas or blanks"));
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(Look::TextInset);
    column->addWidget(form);
    column->addWidget(m_notice);
    column->addWidget(MakeButtons(*this));
    setMinimumWidth(400);
}

FileTypeRow CAddFileType::Row() const {
    return {m_name->text(), m_types->text(), true};
}

void CAddFileType::accept() {
    QLineEdit* const missing = m_name->text().isEmpty()    ? m_name
                               : m_types->text().isEmpty() ? m_types
                                                           : nullptr;
    if (missing) {
        m_notice->SetText(tr("A row needs a name and extensions."));
        return missing->setFocus();
    }
    if (const QString why = TextRefusal(m_types->text()); !why.isEmpty()) {
        m_notice->SetText(why);
        return m_types->setFocus();
    }
    QDialog::accept();
}

void OpenFilterDialog(QWidget* over, const FilterChoice& choice, CountView* count,
                      std::function<void(const FilterChoice&)> accepted) {
    auto* dialog = new FilterDialog(choice, count ? count->Figures() : BackupFigures(), over->window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    if (count)
        QObject::connect(count, &CountView::Counted, dialog,
                         [dialog, count] { dialog->ShowFigures(count->Figures()); });
    QObject::connect(dialog, &QDialog::accepted, over, [dialog, choice, accepted = std::move(accepted)] {
        if (const FilterChoice chosen = dialog->Choice(); chosen != choice)
            accepted(chosen);
    });
    dialog->open();
}
