#include "wizard/WizardPage.h"

#include "wizard/BrenPropertySheet.h"

CWizardPage::CWizardPage(QString title, QString subtitle)
    : m_title(std::move(title)), m_subtitle(std::move(subtitle)) {}

void CWizardPage::Leave() {
    m_sheet->Pass();
}
