#include "wizard/CheckTreeView.h"

#include "look/Look.h"

#include <QHeaderView>
#include <QKeyEvent>
#include <QPainter>
#include <QStyledItemDelegate>

namespace {

constexpr int RowHeight = 26;
constexpr int Indentation = 20;
constexpr int NoteGap = 10;

/// A row with what is told behind its name.
class RowDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        return {QStyledItemDelegate::sizeHint(option, index).width(), RowHeight};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        QStyleOptionViewItem row = option;
        initStyleOption(&row, index);
        const bool message = index.data(CheckTreeModel::IsMessageRole).toBool();
        if (message)
            for (const QPalette::ColorRole role : {QPalette::Text, QPalette::HighlightedText})
                row.palette.setColor(role, Look::Failed);
        const QStyle* style = row.widget->style();
        style->drawControl(QStyle::CE_ItemViewItem, &row, painter, row.widget);
        const QString note = index.data(CheckTreeModel::NoteRole).toString();
        if (note.isEmpty())
            return;
        QRect room = style->subElementRect(QStyle::SE_ItemViewItemText, &row, row.widget);
        const int used = row.fontMetrics.horizontalAdvance(row.text) + NoteGap;
        if (row.direction == Qt::RightToLeft)
            room.setRight(room.right() - used);
        else
            room.setLeft(room.left() + used);
        QFont font = Look::Font(Look::Caption);
        font.setUnderline(message);
        painter->save();
        painter->setFont(font);
        painter->setPen(message                                              ? Look::Accent
                        : index.data(CheckTreeModel::IsLeftOutRole).toBool() ? Look::Paused
                                                                             : Look::Muted);
        painter->drawText(room, Qt::AlignVCenter | Qt::AlignLeading,
                          QFontMetrics(font).elidedText(note, Qt::ElideRight, room.width()));
        painter->restore();
    }
};

} // namespace

CheckTreeView::CheckTreeView(CheckTreeModel& model, QWidget* parent) : QTreeView(parent), m_tree(model) {
    setModel(&model);
    setItemDelegate(new RowDelegate(this));
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setIndentation(Indentation);
    setAnimated(false);
    setEditTriggers(NoEditTriggers);
    setTextElideMode(Qt::ElideMiddle);
    setFont(Look::Font(Look::Small));
    Look::TintSelection(*this);
    connect(this, &QTreeView::expanded, &model, [&model](const QModelIndex& index) { model.List(index); });
    connect(this, &QTreeView::clicked, &model, [&model](const QModelIndex& index) {
        if (model.NodeAt(index).isMessage)
            model.List(index);
    });
    // The first row is the present one as soon as there is one, so that the keys mean something.
    connect(&model, &QAbstractItemModel::rowsInserted, this, [this] {
        if (!currentIndex().isValid())
            selectionModel()->setCurrentIndex(m_tree.index(0, 0), QItemSelectionModel::NoUpdate);
    });
}

void CheckTreeView::GoTo(const TreeLevels::Node& node) {
    for (const TreeLevels::Node* above = node.parent; above && above->parent; above = above->parent)
        expand(m_tree.IndexOf(*above));
    const QModelIndex index = m_tree.IndexOf(node);
    setCurrentIndex(index);
    scrollTo(index);
}

void CheckTreeView::ListPresentLevelAgain() {
    const QModelIndex index = currentIndex();
    m_tree.ListAgain(isExpanded(index) ? index : index.parent());
}

void CheckTreeView::OnEnter(const QModelIndex& index) {
    if (m_tree.NodeAt(index).isMessage)
        m_tree.List(index);
    else if (m_tree.hasChildren(index))
        setExpanded(index, !isExpanded(index));
    else
        m_tree.Toggle(index);
}

void CheckTreeView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (m_tree.rowCount() > 0)
        return;
    const bool listed = m_tree.Levels().Root().listing == TreeLevels::Listing::Listed;
    QPainter painter(viewport());
    painter.setFont(Look::Font(Look::Small));
    painter.setPen(Look::Muted);
    Look::DrawTextLine(painter, QRect(Look::TextInset, 0, viewport()->width() - 2 * Look::TextInset, 32),
                       listed ? tr("There is nothing here.") : tr("Loading..."));
}

void CheckTreeView::keyPressEvent(QKeyEvent* event) {
    const QModelIndex index = currentIndex();
    event->accept();
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (index.isValid() && !event->isAutoRepeat())
            OnEnter(index);
        break;
    case Qt::Key_Space:
        if (index.isValid() && m_tree.NodeAt(index).isMessage)
            m_tree.List(index);
        else if (!index.data(Qt::CheckStateRole).isValid())
            QTreeView::keyPressEvent(event);
        else if (!event->isAutoRepeat())
            m_tree.Toggle(index);
        break;
    case Qt::Key_F5:
        ListPresentLevelAgain();
        break;
    case Qt::Key_Asterisk: // would list the whole tree
        expand(index);
        break;
    default:
        QTreeView::keyPressEvent(event);
    }
}
