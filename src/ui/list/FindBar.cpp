#include "list/FindBar.h"

#include "list/BrenListCtrl.h"
#include "look/Look.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>

namespace {

constexpr int WordsWidth = 220;

} // namespace

FindBar::FindBar(QWidget* target, QWidget* parent)
    : QWidget(parent), m_target(target), m_words(new QLineEdit), m_count(new QLabel) {
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
    Look::SetInk(*m_count, Look::Muted);
    connect(m_words, &QLineEdit::textChanged, this, &FindBar::WordsChanged);
    target->installEventFilter(this);
    hide();
}

FindBar* FindBar::For(CBrenListCtrl* list) {
    auto* bar = new FindBar(list);
    connect(bar, &FindBar::WordsChanged, list, &CBrenListCtrl::SetFilter);
    connect(list, &CBrenListCtrl::CountsChanged, bar,
            [bar, list] { bar->SetCounts(list->Rows().rowCount(), list->Rows().TotalRows()); });
    connect(list, &CBrenListCtrl::FindRequested, bar, &FindBar::Open);
    return bar;
}

QWidget* FindBar::Above(CBrenListCtrl* list, QWidget* parent) {
    auto* both = new QWidget(parent);
    auto* column = new QVBoxLayout(both);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(For(list));
    column->addWidget(list);
    both->setFocusProxy(list);
    return both;
}

void FindBar::Open() {
    show();
    m_words->setFocus(Qt::ShortcutFocusReason);
    m_words->selectAll();
    emit Toggled();
}

void FindBar::Close() {
    m_words->clear();
    hide();
    m_target->setFocus(Qt::OtherFocusReason);
    emit Toggled();
}

void FindBar::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        Close();
    else if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_target->setFocus(Qt::OtherFocusReason);
    else if (event->matches(QKeySequence::Find))
        Open();
    else
        QWidget::keyPressEvent(event);
}

bool FindBar::eventFilter(QObject*, QEvent* event) {
    const bool escape =
        event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape;
    if (!escape || !isVisible())
        return false;
    Close();
    return true;
}

void FindBar::SetCounts(int shown, int total) {
    m_count->setText(tr("%1 of %2").arg(shown).arg(total));
}

QString FindBar::Words() const {
    return m_words->text();
}
