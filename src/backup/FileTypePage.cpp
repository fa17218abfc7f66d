#include "backup/FileTypePage.h"

#include "look/Look.h"
#include "plan/DraftRefusal.h"
#include "platform/HostName.h"
#include "wizard/BrenPropertySheet.h"
#include "wizard/CheckList.h"
#include "wizard/Form.h"

#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace {

constexpr int TypeWidth = 200;

} // namespace

CFileTypePage::CFileTypePage(FileCategory category, std::shared_ptr<BackupDraft> draft)
    : WizardPage(tr("File Types"), tr("Choose which types of files are backed up, wherever they are on this "
                                      "computer.")),
      m_draft(std::move(draft)),
      m_name(new QLineEdit(
          FileTypeTaskName(category, QString::fromStdString(platform::HostName()), QDate::currentDate()))),
      m_types(new CheckList(tr("File types"), {{tr("File Type"), TypeWidth}})), m_categories(new QComboBox) {
    auto* form = new Form;
    form->Add(tr("&Task name"), m_name, Form::Need::Required);
    m_name->setCursorPosition(0);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(form);
    column->addWidget(MakeAdding(category != FileCategory::Documents));
    column->addWidget(m_types, 1);
    Add(category);
    connect(form, &Form::Edited, this, &WizardPage::Edited);
    connect(m_types, &CheckList::Edited, this, &WizardPage::Edited);
}

QWidget* CFileTypePage::MakeAdding(bool enabled) {
    using enum FileCategory;
    for (const FileCategory category : {Documents, Pictures, Music, Videos})
        m_categories->addItem(FileCategoryName(category), int(category));
    auto* label = new QLabel(tr("Types &of:"));
    label->setBuddy(m_categories);
    auto* button = new QPushButton(tr("&Add"));
    button->setAutoDefault(false);
    connect(button, &QPushButton::clicked, this, [this] {
        Add(static_cast<FileCategory>(m_categories->currentData().toInt()));
        emit Edited();
    });
    auto* adding = new QWidget;
    auto* row = new QHBoxLayout(adding);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Look::TextInset);
    row->addWidget(label);
    row->addWidget(m_categories);
    row->addWidget(button);
    row->addStretch();
    adding->setEnabled(enabled);
    return adding;
}

/// A type that stands there already is ticked again.
void CFileTypePage::Add(FileCategory category) {
    for (const QString& type : FileTypesOf(category)) {
        const auto there = m_types->findItems(type, Qt::MatchFixedString);
        if (there.isEmpty())
            m_types->AddRow({type}, true);
        else
            m_types->SetTicked(m_types->indexOfTopLevelItem(there.front()), true);
    }
}

QStringList CFileTypePage::Chosen() const {
    QStringList chosen;
    for (const int row : m_types->TickedRows())
        chosen.append(m_types->topLevelItem(row)->text(0));
    return SplitFileTypes(JoinFileTypes(chosen));
}

void CFileTypePage::showEvent(QShowEvent* event) {
    WizardPage::showEvent(event);
    if (!m_draft->name.isEmpty())
        m_name->setText(m_draft->name);
}

void CFileTypePage::Leave() {
    if (const QString refusal = TaskNameRefusal(m_name->text()); !refusal.isEmpty())
        return Sheet().Stay({refusal, m_name, true});
    const QStringList types = Chosen();
    if (types.isEmpty())
        return Sheet().Stay({tr("Please select at least one file type to backup."), m_types, true});
    m_draft->name = m_name->text();
    m_draft->filter = FilterOfTypes(JoinFileTypes(types));
    Sheet().Pass();
}

PageLine CFileTypePage::Line() const {
    const QStringList types = Chosen();
    return types.isEmpty() ? PageLine() : PageLine{tr("Chosen:"), JoinFileTypes(types)};
}
