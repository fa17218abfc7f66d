#include "development/KitGallery.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "wizard/BrenPropertySheet.h"
#include "wizard/CheckTreeView.h"
#include "wizard/Form.h"
#include "wizard/TreeFindField.h"

#include <QApplication>
#include <QCheckBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTimer>
#include <QVBoxLayout>

namespace {

/// Does all work at the next turn, and for ever what is to be shown under way.
class GalleryReader : public Reader {
public:
    explicit GalleryReader(bool hangs = false) : m_hangs(hangs) {}

    void Submit(Job job) override {
        if (m_hangs)
            return;
        QTimer::singleShot(0, qApp, [job = std::move(job)] {
            if (!job.stop.stop_requested())
                job.work(job.stop.get_token());
            job.done();
        });
    }

private:
    bool m_hangs;
};

Reader& AnsweringReader() {
    static GalleryReader reader;
    return reader;
}

Reader& HangingReader() {
    static GalleryReader reader(true);
    return reader;
}

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
    if (last == QLatin1String("System Volume Information"))
        return TreeLevel{{}, QStringLiteral("No right to list this folder")};
    if (last == QLatin1String("C:"))
        return TreeLevel{
            {Folder("Users"), Folder("\xD7\xAA\xD7\x9E\xD7\x95\xD7\xA0\xD7\x95\xD7\xAA"),
             Folder("A folder whose name is so long that it cannot be shown whole in a window of "
                    "the usual width, as some programs make them")}};
    if (last == QLatin1String("Users"))
        return TreeLevel{{Folder("mara")}};
    if (last == QLatin1String("mara"))
        return TreeLevel{{Folder("Documents"), Folder("Downloads"), Folder("Photos"),
                          Folder("System Volume Information")}};
    if (last == QLatin1String("Photos"))
        return TreeLevel{{Folder("2025"), Folder("2026"), Folder("raw")}};
    return TreeLevel{};
}

/// Opens what is on the way as it is listed, and ticks as in an afternoon's work.
void OpenSample(CheckTreeView& view) {
    CheckTreeModel& model = view.Tree();
    QObject::connect(&model, &CheckTreeModel::Listed, &view, [&view, &model](const QStringList& path) {
        const TreeLevels::Node* node = model.Levels().Find(path);
        for (const auto& child : node->children)
            if (QStringList{QStringLiteral("C:"), QStringLiteral("Users"), QStringLiteral("mara"),
                            QStringLiteral("Photos"), QStringLiteral("System Volume Information")}
                    .contains(child->entry.key))
                view.expand(model.IndexOf(*child));
        if (!path.isEmpty() && path.last() == QLatin1String("Photos")) {
            const QStringList mara = path.first(path.size() - 1);
            model.SetTicked(mara + QStringList(QStringLiteral("Documents")), true);
            model.SetTicked(path, true);
            model.SetTicked(path + QStringList(QStringLiteral("raw")), false);
            view.setCurrentIndex(model.IndexOf(*node));
        }
    });
}

CheckTreeModel* MakeModel(Reader& reader, QWidget& page, CheckTreeModel::Boxes boxes) {
    auto* model = new CheckTreeModel(reader, page, Lane::Service, SampleLevel, boxes);
    model->setParent(&page);
    return model;
}

class SourcePage : public CWizardPage {
public:
    SourcePage()
        : CWizardPage(
              QStringLiteral("What to Backup"),
              QStringLiteral("Tick the folders to back up. Untick a folder below a ticked one to leave "
                             "it out.")),
          m_model(MakeModel(AnsweringReader(), *this, CheckTreeModel::Boxes::Checks)),
          m_view(new CheckTreeView(*m_model)) {
        m_view->setAccessibleName(QStringLiteral("Folders"));
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->setSpacing(8);
        column->addWidget(new TreeFindField(*m_view, QStringLiteral("Find a folder")));
        column->addWidget(m_view, 1);
        OpenSample(*m_view);
        connect(m_model, &CheckTreeModel::ChoiceEdited, this, &CWizardPage::Edited);
    }

    void Fill() override { m_model->List(); }
    PageLine Line() const override {
        const TreeWalk walk = m_model->Walk();
        if (walk.selected.empty())
            return {};
        QStringList names;
        for (const WalkedNode& node : walk.selected)
            names.append(node.path.last());
        return {
            QStringLiteral("%1 folders, %2 left out.").arg(walk.selected.size()).arg(walk.excluded.size()),
            names.join(QStringLiteral(", "))};
    }
    void Leave() override {
        if (m_model->Choice().IsEmpty())
            return Sheet().Stay(
                {QStringLiteral("Please select at least one folder to backup!"), m_view, true});
        Sheet().Pass();
    }

private:
    CheckTreeModel* m_model;
    CheckTreeView* m_view;
};

class ConfirmPage : public CWizardPage {
public:
    ConfirmPage()
        : CWizardPage(QStringLiteral("Confirm and Start"),
                      QStringLiteral("Nothing is created until you press Finish.")),
          m_form(new CForm) {
        m_name =
            m_form->Add(QStringLiteral("Task &Name"),
                        new QLineEdit(QStringLiteral("desk-07:Backup [Documents, Photos] To [Home/Backup]")),
                        CForm::Need::Required);
        auto* text =
            new QPlainTextEdit(QStringLiteral("Backup the Following Folders (and subfolders):\n"
                                              "C:\\Users\\mara\\Documents\nC:\\Users\\mara\\Photos"));
        text->setReadOnly(true);
        text->setAccessibleName(QStringLiteral("What will be done"));
        m_form->AddWide(text);
        m_form->Add(QStringLiteral("&Full backup every"), new QSpinBox, CForm::Need::Optional,
                    QStringLiteral("Backups"));
        m_form->AddWide(new QCheckBox(QStringLiteral("&Encrypt Backup Data")));
        auto* column = new QVBoxLayout(this);
        column->setContentsMargins(0, 0, 0, 0);
        column->addWidget(m_form);
        column->addStretch();
        connect(m_form, &CForm::Edited, this, &CWizardPage::Edited);
    }

    bool IsComplete() const override { return !m_name->text().isEmpty(); }
    void Leave() override {
        Sheet().SendAll(
            Lane::Service,
            {{QStringLiteral("Creating the backup task..."), m_name->text().toUtf8(), [](std::stop_token) {
                  return QStringLiteral("Failed to create backup task! The service does not answer. "
                                        "Nothing was created; press Finish to try again.");
              }}});
    }

private:
    CForm* m_form;
    QLineEdit* m_name = nullptr;
};

CBrenPropertySheet* MakeSample(Reader& reader, UserPrompts& prompts, SampleWizard state, QWidget* parent) {
    auto* sheet = new CBrenPropertySheet(reader, prompts, QStringLiteral("Backup by Folder"), parent);
    if (state == SampleWizard::FirstPage)
        sheet->AddPage(new SourcePage);
    sheet->AddPage(new CWizardPage(QStringLiteral("Where to Backup"), {}));
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
        Press(sheet, QStringLiteral("&Next"));
        Press(sheet, QStringLiteral("&Finish"));
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
    tree->setAccessibleName(QStringLiteral("Folders to tick"));
    OpenSample(*tree);
    checks->List();
    auto* left = new QVBoxLayout;
    left->addWidget(new TreeFindField(*tree, QStringLiteral("Find a folder")));
    left->addWidget(tree, 1);
    row->addLayout(left, 3);

    // Its first level comes, and nothing below it ever does.
    CheckTreeModel* slow =
        new CheckTreeModel(HangingReader(), *sheet, Lane::Service, SampleLevel, CheckTreeModel::Boxes::None);
    slow->setParent(sheet);
    slow->SetLevel({}, *SampleLevel({}, {}));
    auto* picker = new CheckTreeView(*slow);
    picker->setAccessibleName(QStringLiteral("Folders to pick"));
    picker->expand(slow->index(0, 0));
    auto* disabled = new CheckTreeView(*checks);
    disabled->setAccessibleName(QStringLiteral("Folders that cannot be ticked now"));
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
    auto* open = new QPushButton(QStringLiteral("Open it as a window"));
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
