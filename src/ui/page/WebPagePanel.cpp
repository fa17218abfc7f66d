#include "page/WebPagePanel.h"

#include "look/Look.h"
#include "platform/Folders.h"

#include <QApplication>
#include <QPainter>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

WebPagePanel::WebPagePanel(const Console& console, QString fileName)
    : CBrenPanel(console), m_fileName(std::move(fileName)) {}

void WebPagePanel::Activate() {
    CBrenPanel::Activate();
    setFocusProxy(m_browser);
}

void WebPagePanel::CreatePanel() {
    m_browser = new QTextBrowser;
    m_browser->setFrameShape(QFrame::NoFrame);
    m_browser->setOpenExternalLinks(true);
    const std::string folder = platform::Utf8FromPath(platform::ExecutableFolder());
    m_browser->setSource(QUrl::fromLocalFile(QString::fromStdString(folder) + u'/' + m_fileName));
    m_browser->setAccessibleName(m_browser->documentTitle());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(12, 12, 12, 12);
    layout->addWidget(m_browser);
    connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
}

/// The ring around the text, which has no frame of its own.
void WebPagePanel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_browser->hasFocus())
        Look::DrawFocusRing(painter, QRect(m_browser->geometry()).adjusted(-4, -4, 4, 4));
}
