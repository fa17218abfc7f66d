#include "app/WaitDlg.h"

#include <QLabel>
#include <QProgressBar>
#include <QVBoxLayout>

WaitDlg::WaitDlg(const QString& title, const QString& text) : m_bar(new QProgressBar) {
    setWindowTitle(title);
    m_bar->setRange(0, 0);
    m_bar->setTextVisible(false);
    m_bar->setAccessibleName(text);

    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 24);
    layout->setSpacing(12);
    layout->addWidget(label);
    layout->addWidget(m_bar);
    setMinimumWidth(420);
}
