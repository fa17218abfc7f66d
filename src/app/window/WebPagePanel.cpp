#include "window/WebPagePanel.h"

#include "platform/Folders.h"

#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

CWebPagePanel::CWebPagePanel(const Console& console, QString fileName)
    : CBrenPanel(console), m_fileName(std::move(fileName)) {}

void CWebPagePanel::Activate() {
    CBrenPanel::Activate();
    setFocusProxy(findChild<QTextBrowser*>());
}

void CWebPagePanel::CreatePanel() {
    auto* browser = new QTextBrowser;
    browser->setFrameShape(QFrame::NoFrame);
    browser->setOpenExternalLinks(true);
    const std::string folder = platform::Utf8FromPath(platform::ExecutableFolder());
    browser->setSource(QUrl::fromLocalFile(QString::fromStdString(folder) + u'/' + m_fileName));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->addWidget(browser);
}
