#include "wizard/WizardPage.h"

#include "wizard/BrenPropertySheet.h"

WizardPage::WizardPage(QString title, QString subtitle)
    : m_title(std::move(title)), m_subtitle(std::move(subtitle)) {}

void WizardPage::Leave() {
    m_sheet->Pass();
}
