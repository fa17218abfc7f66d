#include "ui/FindBar.h"

#include "ui/BrenListCtrl.h"
#include "ui/Look.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace {

constexpr int WordsWidth = 220;

} // namespace

FindBar::FindBar(CBrenListCtrl* list, QWidget* parent)
    : QWidget(parent), m_list(list), m_words(new QLineEdit), m_count(new QLabel) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 8);
    row->setSpacing(8);
    row->addWidget(m_words);
    row->addWidget(m_count);
    row->addStretch();
    m_words->setFixedWidth(WordsWidth);
    m_words->setFont(Look::Font(Look::Small));
    m_words->setPlaceholderText(tr("Find"));
    m_words->setAccessibleName(tr("Find"));
    m_words->setClearButtonEnabled(true);
    m_count->setFont(Look::Font(Look::Small));
    QPalette palette = m_count->palette();
    palette.setColor(QPalette::WindowText, Look::Muted);
    m_count->setPalette(palette);
    connect(m_words, &QLineEdit::textChanged, list, &CBrenListCtrl::SetFilter);
    connect(list, &CBrenListCtrl::CountsChanged, this, &FindBar::ShowCount);
    connect(list, &CBrenListCtrl::FindRequested, this, &FindBar::Open);
    hide();
}

QWidget* FindBar::Above(CBrenListCtrl* list, QWidget* parent) {
    auto* both = new QWidget(parent);
    auto* column = new QVBoxLayout(both);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(new FindBar(list));
    column->addWidget(list);
    both->setFocusProxy(list);
    return both;
}

void FindBar::Open() {
    ShowCount();
    show();
    m_words->setFocus(Qt::ShortcutFocusReason);
    m_words->selectAll();
}

void FindBar::Close() {
    m_words->clear();
    hide();
    m_list->setFocus(Qt::OtherFocusReason);
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        Close();
    else if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_list->setFocus(Qt::OtherFocusReason);
    else if (event->matches(QKeySequence::Find))
        Open();
    else
        QWidget::keyPressEvent(event);
}

void FindBar::ShowCount() {
    m_count->setText(tr("%1 of %2").arg(m_list->Rows().rowCount()).arg(m_list->Rows().TotalRows()));
}
