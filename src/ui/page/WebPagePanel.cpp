#include "page/WebPagePanel.h"

#include "page/WebPage.h"

#include <QVBoxLayout>

WebPagePanel::WebPagePanel(const Console& console, QString fileName)
    : CBrenPanel(console), m_fileName(std::move(fileName)) {}

void WebPagePanel::CreatePanel() {
    auto* page = new WebPage(m_fileName);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(8, 8, 8, 8);
    layout->addWidget(page);
    setFocusProxy(page);
}
