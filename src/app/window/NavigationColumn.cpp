#include "window/NavigationColumn.h"

#include "look/IconRegistry.h"
#include "look/Look.h"
#include "window/ActionButtons.h"

#include <QLabel>
#include <QListWidget>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int SectionHeight = 40;
constexpr int SectionIconSize = 20;
constexpr int AccentBarWidth = 3;
constexpr int IconNameRole = Qt::UserRole;

/// Draws a section: icon and title, an accent bar on the chosen one.
class SectionDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override {
        return {NavigationColumn::Width, SectionHeight};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const bool chosen = option.state.testFlag(QStyle::State_Selected);
        const QRect area = option.rect;
        painter->fillRect(QRect(area.right(), area.top(), 1, area.height()), Look::Line);
        if (chosen)
            PaintChosen(*painter, area);
        else if (option.state.testFlag(QStyle::State_MouseOver))
            painter->fillRect(area, Look::AccentTint);

        const QColor colour = chosen ? Look::Accent : Look::Secondary;
        const QRect iconArea(area.left() + 19, area.top() + (SectionHeight - SectionIconSize) / 2,
                             SectionIconSize, SectionIconSize);
        IconRegistry::Icon(index.data(IconNameRole).toString(), colour).paint(painter, iconArea);
        painter->setPen(Look::Ink);
        painter->setFont(Look::Font(Look::Body, chosen ? QFont::Bold : QFont::Normal));
        const QRect textArea = area.adjusted(51, 0, -8, 0);
        painter->drawText(
            textArea, Qt::AlignVCenter,
            painter->fontMetrics().elidedText(index.data().toString(), Qt::ElideRight, textArea.width()));
        if (option.state.testFlag(QStyle::State_HasFocus) && option.widget->hasFocus())
            Look::DrawFocusRing(*painter, QRectF(area).adjusted(AccentBarWidth, 0, 0, 0));
    }

private:
    static void PaintChosen(QPainter& painter, const QRect& area) {
        painter.fillRect(area, Look::Paper);
        painter.fillRect(QRect(area.left(), area.top(), area.width(), 1), Look::Line);
        painter.fillRect(QRect(area.left(), area.bottom(), area.width(), 1), Look::Line);
        painter.fillRect(QRect(area.left(), area.top(), AccentBarWidth, area.height()), Look::Accent);
    }
};

QLabel* MakeLabel(const QString& text, Look::TextSize size, const QColor& colour) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setFont(Look::Font(size, QFont::Bold));
    Look::SetInk(*label, colour);
    label->setContentsMargins(16, 0, 8, 0);
    return label;
}

} // namespace

NavigationColumn::NavigationColumn(const QString& programName)
    : m_sections(new QListWidget), m_actionArea(new QWidget), m_actions(new QVBoxLayout) {
    setObjectName(u"navigation"_s);

    QLabel* name = MakeLabel(programName, Look::Body, QColor(0x1A, 0x32, 0x5A));
    name->setFont(Look::Font(Look::TextSize(14), QFont::Bold));
    name->setFixedHeight(52);
    name->setToolTip(programName.toHtmlEscaped());

    m_sections->setItemDelegate(new SectionDelegate(m_sections));
    m_sections->setAccessibleName(tr("Sections"));
    m_sections->setFrameShape(QFrame::NoFrame);
    m_sections->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_sections->setSizeAdjustPolicy(QAbstractScrollArea::AdjustToContents);
    m_sections->setMouseTracking(true);
    m_sections->viewport()->setAutoFillBackground(false);
    connect(m_sections, &QListWidget::currentRowChanged, this, &NavigationColumn::SectionChosen);

    m_actionArea->setObjectName(u"sideActions"_s);
    auto* actionLayout = new QVBoxLayout(m_actionArea);
    actionLayout->setContentsMargins(0, 12, 0, 12);
    actionLayout->setSpacing(4);
    actionLayout->addWidget(MakeLabel(tr("ACTIONS"), Look::Caption, Look::Muted));
    m_actions->setContentsMargins(8, 4, 8, 0);
    m_actions->setSpacing(0);
    actionLayout->addLayout(m_actions);
    m_actionArea->hide();

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(name);
    layout->addWidget(m_sections);
    layout->addWidget(m_actionArea);
    layout->addStretch();
}

void NavigationColumn::AddSection(const QString& title, const QString& icon) {
    auto* item = new QListWidgetItem(title, m_sections);
    item->setData(IconNameRole, icon);
    m_sections->setFixedHeight(SectionHeight * m_sections->count());
}

int NavigationColumn::SectionCount() const {
    return m_sections->count();
}

QString NavigationColumn::SectionTitle(int index) const {
    return m_sections->item(index)->text();
}

void NavigationColumn::SelectSection(int index) {
    m_sections->setCurrentRow(index);
}

QWidget* NavigationColumn::Sections() const {
    return m_sections;
}

void NavigationColumn::SetActions(QWidget& owner, const std::vector<FrameAction>& actions) {
    ShowActions(*m_actions, owner, actions, ActionButton::Kind::Link);
    m_actionArea->setVisible(!actions.empty());
}

void NavigationColumn::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), Look::Side);
    painter.fillRect(QRect(width() - 1, 0, 1, height()), Look::Line);
}
