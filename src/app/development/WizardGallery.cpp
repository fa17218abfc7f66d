#include "development/GalleryReader.h"
#include "development/KitGallery.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "wizard/BrenPropertySheet.h"
#include "wizard/CheckTreeView.h"
#include "wizard/Form.h"
#include "wizard/TreeFindField.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

TreeEntry Folder(const char* name) {
    const QString text = QString::fromUtf8(name);
    return {text, text, FolderIcon};
}

TreeEntry Drive(const char* key, const char* name) {
    return {QString::fromLatin1(key), QString::fromLatin1(name), TargetIcon};
}

std::optional<TreeLevel> SampleLevel(const QStringList& path, std::stop_token) {
    const QString last = path.isEmpty() ? QString() : path.last();
    if (path.isEmpty())
        return TreeLevel{{Drive("C:", "Local Disk (C:)"), Drive("D:", "Local Disk (D:)"),
                          Drive("N:", "Network Drive (N:) - Change may not be backed up in real time")}};
    if (last == "System Volume Information"_L1)
        return TreeLevel{{}, u"No right to list this folder"_s};
    if (last == "C:"_L1)
        return TreeLevel{
            {Folder("Users"), Folder("\xD7\xAA\xD7\x9E\xD7\x95\xD7\xA0\xD7\x95\xD7\xAA"),
             Folder("A folder whose name is so long that it cannot be shown whole in a window of "
                    "the usual width, as some programs make them")}};
    if (last == "Users"_L1)
        return TreeLevel{{Folder("mara")}};
    if (last == "mara"_L1)
        return TreeLevel{{Folder("Documents"), Folder("Downloads"), Folder("Photos"),
                          Folder("System Volume Information")}};
    if (last == "Photos"_L1)
        return TreeLevel{{Folder("2025"), Folder("2026"), Folder("raw")}};
    return TreeLevel{};
}

/// Opens what is on the way as it is listed, and ticks as in an afternoon's work.
void OpenSample(CheckTreeView& view) {
    CheckTreeModel& model = view.Tree();
    QObject::connect(&model, &CheckTreeModel::Listed, &view, [&view, &model](const QStringList& path) {
        const TreeLevels::Node* node = model.Levels().Find(path);
        for (const auto& child : node->children)
            if (QStringList{u"C:"_s, u"Users"_s, u"mara"_s, u"Photos"_s, u"System Volume Information"_s}
                    .contains(child->entry.key))
                view.expand(model.IndexOf(*child));
        if (!path.isEmpty() && path.last() == "Photos"_L1) {
            const QStringList mara = path.first(path.size() - 1);
            model.SetTicked(mara + QStringList(u"Documents"_s), true);
            model.SetTicked(path, true);
            model.SetTicked(path + QStringList(u"raw"_s), false);
            view.setCurrentIndex(model.IndexOf(*node));
        }
    });
}

CheckTreeModel* MakeModel(Reader& reader, QWidget& page, CheckTreeModel::Boxes boxes) {
    auto* model = new CheckTreeModel(reader, page, Lane::Service, SampleLevel, boxes);
    model->setParent(&page);
    return model;
}

class SourcePage : public WizardPage {
public:
    SourcePage()
        : WizardPage(u"What to Backup"_s,
                     u"Tick the folders to back up. Untick a folder below a ticked one to leave "
                     "it out."_s),
          m_model(MakeModel(AnsweringReader(), *this, CheckTreeModel::Boxes::Checks)),
          m_view(new CheckTreeView(*m_model)) {
        m_view->setAccessibleName(u"Folders"_s);
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(8);
        column->addWidget(new TreeFindField(*m_view, u"Find a folder"_s));
        column->addWidget(m_view, 1);
        OpenSample(*m_view);
        connect(m_model, &CheckTreeModel::ChoiceEdited, this, &WizardPage::Edited);
    }

    void Fill() override { m_model->List(); }
    PageLine Line() const override {
        const TreeWalk walk = m_model->Walk();
        if (walk.selected.empty())
            return {};
        QStringList names;
        for (const WalkedNode& node : walk.selected)
            names.append(node.path.last());
        return {u"%1 folders, %2 left out."_s.arg(walk.selected.size()).arg(walk.excluded.size()),
                names.join(u", "_s)};
    }
    void Leave() override {
        if (m_model->Choice().IsEmpty())
            return Sheet().Stay({u"Please select at least one folder to backup!"_s, m_view, true});
        Sheet().Pass();
    }

private:
    CheckTreeModel* m_model;
    CheckTreeView* m_view;
};

class ConfirmPage : public WizardPage {
public:
    ConfirmPage()
        : WizardPage(u"Confirm and Start"_s, u"Nothing is created until you press Finish."_s),
          m_form(new Form) {
        m_name = m_form->Add(u"Task &Name"_s,
                             new QLineEdit(u"desk-07:Backup [Documents, Photos] To [Home/Backup]"_s),
                             Form::Need::Required);
        auto* text = new QPlainTextEdit(u"Backup the Following Folders (and subfolders):\n"
                                        "C:\\Users\\mara\\Documents\nC:\\Users\\mara\\Photos"_s);
        text->setReadOnly(true);
        text->setAccessibleName(u"What will be done"_s);
        m_form->AddWide(text);
        m_form->Add(u"&Full backup every"_s, new QSpinBox, Form::Need::Optional, u"Backups"_s);
        m_form->AddWide(new QCheckBox(u"&Encrypt Backup Data"_s));
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(m_form);
        column->addStretch();
        connect(m_form, &Form::Edited, this, &WizardPage::Edited);
    }

    bool IsComplete() const override { return !m_name->text().isEmpty(); }
    void Leave() override {
        Sheet().SendAll(Lane::Service,
                        {{u"Creating the backup task..."_s, m_name->text().toUtf8(), [](std::stop_token) {
                              return u"Failed to create backup task! The service does not answer. "
                                     "Nothing was created; press Finish to try again."_s;
                          }}});
    }

private:
    Form* m_form;
    QLineEdit* m_name = nullptr;
};

CBrenPropertySheet* MakeSample(Reader& reader, UserPrompts& prompts, SampleWizard state, QWidget* parent) {
    auto* sheet = new CBrenPropertySheet(reader, prompts, u"Backup by Folder"_s, parent);
    if (state == SampleWizard::FirstPage)
        sheet->AddPage(new SourcePage);
    sheet->AddPage(new WizardPage(u"Where to Backup"_s, {}));
    sheet->AddPage(new ConfirmPage);
    return sheet;
}

void Press(CBrenPropertySheet& sheet, const QString& caption) {
    for (QPushButton* button : sheet.findChildren<QPushButton*>())
        if (button->text() == caption)
            button->click();
}

void FinishWhenShown(CBrenPropertySheet& sheet) {
    auto* timer = new QTimer(&sheet);
    timer->start(50);
    QObject::connect(timer, &QTimer::timeout, &sheet, [&sheet, timer] {
        if (!sheet.isVisible())
            return;
        timer->stop();
        Press(sheet, u"&Next"_s);
        Press(sheet, u"&Finish"_s);
    });
}

} // namespace

QWidget* MakeTreeGallery() {
    auto* sheet = new QWidget;
    auto* row = new QHBoxLayout(sheet);
    row->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    row->setSpacing(Look::TextInset);
    CheckTreeModel* checks = MakeModel(AnsweringReader(), *sheet, CheckTreeModel::Boxes::Checks);
    auto* tree = new CheckTreeView(*checks);
    tree->setAccessibleName(u"Folders to tick"_s);
    OpenSample(*tree);
    checks->List();
    auto* left = new QVBoxLayout;
    left->addWidget(new TreeFindField(*tree, u"Find a folder"_s));
    left->addWidget(tree, 1);
    row->addLayout(left, 3);

    // Its first level comes, and nothing below it ever does.
    CheckTreeModel* slow =
        new CheckTreeModel(HangingReader(), *sheet, Lane::Service, SampleLevel, CheckTreeModel::Boxes::None);
    slow->setParent(sheet);
    slow->SetLevel({}, *SampleLevel({}, {}));
    auto* picker = new CheckTreeView(*slow);
    picker->setAccessibleName(u"Folders to pick"_s);
    picker->expand(slow->index(0, 0));
    auto* disabled = new CheckTreeView(*checks);
    disabled->setAccessibleName(u"Folders that cannot be ticked now"_s);
    disabled->setEnabled(false);
    auto* right = new QVBoxLayout;
    right->addWidget(picker, 1);
    right->addWidget(disabled, 1);
    row->addLayout(right, 2);
    return sheet;
}

QWidget* MakeWizardGallery(UserPrompts& prompts, SampleWizard state) {
    auto* board = new QWidget;
    Reader& reader = state == SampleWizard::Busy ? HangingReader() : AnsweringReader();
    CBrenPropertySheet* sheet = MakeSample(reader, prompts, state, board);
    sheet->setWindowFlags(Qt::Widget);
    sheet->setAttribute(Qt::WA_DeleteOnClose, false);
    auto* open = new QPushButton(u"Open it as a window"_s);
    auto* column = new QVBoxLayout(board);
    column->addWidget(sheet, 1);
    column->addWidget(open, 0, Qt::AlignLeft);
    QObject::connect(open, &QPushButton::clicked, board, [board, &reader, &prompts, state] {
        MakeSample(reader, prompts, state, board)->open();
    });
    if (state != SampleWizard::FirstPage)
        FinishWhenShown(*sheet);
    return board;
}
