#include "wizard/WizardPage.h"

#include "wizard/BrenPropertySheet.h"

#include <QScrollArea>
#include <QVBoxLayout>

WizardPage::WizardPage(QString title, QString subtitle)
    : m_title(std::move(title)), m_subtitle(std::move(subtitle)) {}

void WizardPage::SetScrolled(QWidget* content) {
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidgetResizable(true);
    area->setWidget(content);
    auto* whole = new QVBoxLayout(this);
    whole->setContentsMargins(0, 0, 0, 0);
    whole->addWidget(area);
}

void WizardPage::Leave() {
    m_sheet->Pass();
}
