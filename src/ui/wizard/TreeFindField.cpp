#include "wizard/TreeFindField.h"

#include "look/IconRegistry.h"
#include "look/Look.h"
#include "wizard/CheckTreeView.h"

#include <QElapsedTimer>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QSet>

namespace {

constexpr int FieldWidth = 280;
constexpr qint64 PieceMilliseconds = 8;
constexpr int NodesBetweenLooksAtTheClock = 256;

} // namespace

TreeFindField::TreeFindField(CheckTreeView& view, const QString& placeholder, Others others, QWidget* parent)
    : QWidget(parent), m_view(view), m_words(new QLineEdit), m_count(new QLabel), m_others(others) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Look::TextInset);
    row->addWidget(m_words);
    row->addWidget(m_count);
    row->addStretch();
    m_words->setFixedWidth(FieldWidth);
    m_words->setFont(Look::Font(Look::Small));
    m_words->setPlaceholderText(placeholder);
    m_words->setAccessibleName(placeholder);
    m_words->setClearButtonEnabled(true);
    m_words->addAction(IconRegistry::Icon(SearchIcon), QLineEdit::LeadingPosition);
    m_words->installEventFilter(this);
    m_count->setFont(Look::Font(Look::Small));
    Look::SetInk(*m_count, Look::Muted);
    setFocusProxy(m_words);

    connect(m_words, &QLineEdit::textChanged, this, [this] {
        m_went = false;
        Start();
        emit WordsChanged();
    });
    connect(&m_timer, &QTimer::timeout, this, &TreeFindField::LookOn);
    // What was found may go with the rows, and what has come may hold the words.
    const auto again = [this] {
        m_found.clear();
        m_at = nullptr;
        m_timer.start(0);
        QMetaObject::invokeMethod(this, &TreeFindField::Start, Qt::QueuedConnection);
    };
    connect(&view.Tree(), &QAbstractItemModel::rowsAboutToBeRemoved, this, again);
    connect(&view.Tree(), &QAbstractItemModel::rowsInserted, this, again);
}

QString TreeFindField::Words() const {
    return m_words->text();
}

void TreeFindField::Start() {
    m_found.clear();
    m_shown = 0;
    m_at = m_words->text().isEmpty() ? nullptr : NextNode(m_view.Tree().Levels().Root());
    m_timer.start(0);
    ShowCount();
}

void TreeFindField::LookOn() {
    QElapsedTimer since;
    since.start();
    const QString words = m_words->text();
    for (int nodes = 0; m_at; m_at = NextNode(*m_at)) {
        if (!m_at->isMessage && m_at->entry.name.contains(words, Qt::CaseInsensitive))
            m_found.push_back(m_at);
        if (++nodes % NodesBetweenLooksAtTheClock == 0 && since.elapsed() >= PieceMilliseconds)
            break;
    }
    if (!m_at) {
        m_timer.stop();
        HideOthers();
        emit LookedAtAll();
    }
    if (!m_found.empty() && !std::exchange(m_went, true))
        m_view.GoTo(*m_found.front());
    ShowCount();
}

void TreeFindField::HideOthers() {
    const bool hides = m_others == Others::Hidden && !m_words->text().isEmpty();
    if (!hides && !m_hides)
        return;
    m_hides = hides;
    QSet<const TreeLevels::Node*> above;
    for (const TreeLevels::Node* found : m_found)
        for (const TreeLevels::Node* node = found; node && !above.contains(node); node = node->parent)
            above.insert(node);
    QSet<const TreeLevels::Node*> within(m_found.begin(), m_found.end());
    for (const TreeLevels::Node* node = NextNode(m_view.Tree().Levels().Root()); node;
         node = NextNode(*node)) {
        if (within.contains(node->parent))
            within.insert(node);
        const bool shown = above.contains(node) || within.contains(node);
        m_view.setRowHidden(node->row, m_view.Tree().IndexOf(*node->parent), hides && !shown);
    }
}

void TreeFindField::Step(int by) {
    if (m_found.empty())
        return;
    m_shown = (m_shown + m_found.size() + std::size_t(by)) % m_found.size();
    m_view.GoTo(*m_found[m_shown]);
    ShowCount();
}

void TreeFindField::ShowCount() {
    if (m_words->text().isEmpty())
        m_count->clear();
    else if (m_found.empty())
        m_count->setText(m_at ? tr("Looking...") : tr("Not among what is listed"));
    else
        m_count->setText(tr("%1 of %2").arg(m_shown + 1).arg(m_found.size()));
}

bool TreeFindField::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress)
        return QWidget::eventFilter(watched, event);
    const auto& key = static_cast<const QKeyEvent&>(*event);
    switch (key.key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        Step(key.modifiers() & Qt::ShiftModifier ? -1 : +1);
        return true;
    case Qt::Key_Down:
        Step(+1);
        return true;
    case Qt::Key_Up:
        Step(-1);
        return true;
    case Qt::Key_Escape:
        if (m_words->text().isEmpty())
            return false;
        m_words->clear();
        return true;
    default:
        return false;
    }
}
