#include "page/WebPage.h"

#include "look/Look.h"
#include "platform/Folders.h"

#include <QApplication>
#include <QPainter>
#include <QTextBrowser>
#include <QUrl>
#include <QVBoxLayout>

namespace {

constexpr int RingRoom = 4;

} // namespace

WebPage::WebPage(const QString& fileName, QWidget* parent) : QWidget(parent), m_browser(new QTextBrowser) {
    m_browser->setFrameShape(QFrame::NoFrame);
    m_browser->setOpenExternalLinks(true);
    const std::string folder = platform::Utf8FromPath(platform::ExecutableFolder());
    m_browser->setSource(QUrl::fromLocalFile(QString::fromStdString(folder) + u'/' + fileName));
    m_browser->setAccessibleName(m_browser->documentTitle());
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(RingRoom, RingRoom, RingRoom, RingRoom);
    layout->addWidget(m_browser);
    setFocusProxy(m_browser);
    connect(qApp, &QApplication::focusChanged, this, [this] { update(); });
}

/// The ring around the text, which has no frame of its own.
void WebPage::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (m_browser->hasFocus())
        Look::DrawFocusRing(painter, rect());
}
