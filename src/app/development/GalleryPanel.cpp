#include "development/GalleryPanel.h"

#include "cards/LabeledPanel.h"
#include "development/GalleryCards.h"
#include "development/KitGallery.h"
#include "development/ListGallery.h"
#include "development/StateGallery.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/LinkLabel.h"
#include "page/UserPrompts.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QSpinBox>

GalleryPanel::GalleryPanel(const Console& console, QWidget* parent) : CTabPanel(console, parent) {
    SetHelp(tr("Every kind of card, tab, paging state, control and icon. A text of two lines goes on "
               "below the first one and never runs under the toolbar."));
    SetToolbar({{tr("Pause"), PauseIcon, [] {}},
                {tr("Cancel Task"), CancelTaskIcon, [] {}, false},
                RefreshAction()});
    SetSideActions({RefreshAction()});
}

void GalleryPanel::Activate() {
    CTabPanel::Activate();
    LeaveHead(false); // the pages have none of their own
}

void GalleryPanel::CreatePanel() {
    AddTab(tr("Cards"), MakeGalleryCards(TheConsole(), 14), TaskListIcon);
    AddTab(tr("One Page"), MakeGalleryCards(TheConsole(), 2), OtherOperationIcon);
    AddTab(tr("No Cards"), MakeGalleryCards(TheConsole(), 0), CompletedTasksIcon);
    AddTab(tr("Controls"), MakeControls(), TaskSettingsIcon);
    AddTab(tr("Lists"), MakeScrolled(MakeListGallery(TheConsole().prompts, nullptr)), TraceIcon);
    AddTab(tr("Fields"), MakeScrolled(MakeFieldGallery(TheConsole().prompts)), EditIcon);
    AddTab(tr("Form"), MakeScrolled(MakeFormGallery(TheConsole().prompts)), SettingIcon);
    AddTab(tr("Grid"), MakeScrolled(MakeGridGallery(TheConsole().prompts)), SettingGroupIcon);
    AddTab(tr("States"), MakeScrolled(MakeStateGallery(TheConsole())), TaskFailedIcon);
    AddTab(tr("Trees"), MakeScrolled(MakeTreeGallery()), FolderIcon);
    for (const auto& [title, state] : {std::pair(tr("Wizard"), SampleWizard::FirstPage),
                                       {tr("Busy"), SampleWizard::Busy},
                                       {tr("Failed"), SampleWizard::Failed}})
        AddTab(title, MakeScrolled(MakeWizardGallery(TheConsole().prompts, state)), BackupIcon);
    AddTab(tr("Icons"), MakeScrolled(MakeIconSheet(nullptr)), MountedIcon);
    AddHiddenTab(tr("Hidden"), MakeGalleryCards(TheConsole(), 7), SystemTasksIcon);
    auto* advanced = new QCheckBox(tr("Advanced Mode"));
    connect(advanced, &QCheckBox::toggled, this, [this](bool on) {
        if (on)
            ShowAllTabs(PageCount() - 1);
        else
            ShowFirstTabs(PageCount() - 1);
    });
    SetCorner(advanced);
}

CBrenPanel* GalleryPanel::MakeControls() {
    auto* panel = new CBrenPanel(TheConsole());
    auto* form = new QFormLayout(panel);
    form->setContentsMargins(Look::PageMargin, 20, Look::PageMargin, 20);
    form->setSpacing(Look::TextInset);

    auto* result = new LinkLabel;
    auto* ask = new QPushButton(tr("Ask"));
    connect(ask, &QPushButton::clicked, panel, [this, panel, result] {
        TheConsole().prompts.AskYesNo(
            panel, tr("Do you really want to cancel the task?"),
            [result](bool yes) { result->SetText(yes ? tr("Yes") : tr("No")); },
            tr("Details in <b>plain</b> text"));
    });
    auto* tell = new QPushButton(tr("Tell"));
    connect(tell, &QPushButton::clicked, panel,
            [this, panel] { TheConsole().prompts.ShowMessage(panel, tr("Operation Failed\n")); });
    auto* off = new QPushButton(tr("Disabled"));
    off->setEnabled(false);
    form->addRow(ask, result);
    form->addRow(tell, off);

    auto* link = new LinkLabel(
        tr("You have not configured a cloud storage account.  Click <a>here</a> or <a>there</a>."));
    link->setWordWrap(true);
    connect(link, &LinkLabel::LinkClicked, result,
            [result](int span) { result->SetText(tr("Link %1").arg(span)); });
    form->addRow(tr("Links"), link);
    form->addRow(tr("Text"), new QLineEdit(tr("C:\\Data")));
    auto* combo = new QComboBox;
    combo->addItems({tr("True"), tr("False")});
    form->addRow(tr("Choice"), combo);
    auto* number = new QSpinBox;
    number->setValue(20);
    form->addRow(tr("Number"), number);
    auto* check = new QCheckBox(tr("Set"));
    check->setChecked(true);
    form->addRow(check, new QCheckBox(tr("Not set")));
    auto* radio = new QRadioButton(tr("Chosen"));
    radio->setChecked(true);
    form->addRow(radio, new QRadioButton(tr("Not chosen")));
    auto* labeled = new CLabeledPanel(tr("A labeled panel"));
    labeled->setMinimumHeight(80);
    form->addRow(labeled);
    return panel;
}

CBrenPanel* GalleryPanel::MakeScrolled(QWidget* content) {
    auto* panel = new CBrenPanel(TheConsole());
    auto* scroll = new QScrollArea;
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setWidgetResizable(true);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(content);
    auto* layout = new QVBoxLayout(panel);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scroll);
    return panel;
}
