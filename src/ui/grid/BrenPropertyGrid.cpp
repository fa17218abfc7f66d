#include "grid/BrenPropertyGrid.h"

#include "look/Look.h"

#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace {

constexpr int GroupGap = 12;

} // namespace

CBrenPropertyGrid::CBrenPropertyGrid(UserPrompts& prompts, QWidget* parent)
    : QScrollArea(parent), m_prompts(prompts), m_stack(new QVBoxLayout) {
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    QPalette colours = palette();
    colours.setColor(QPalette::Window, Look::Paper);
    setPalette(colours);

    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(Look::PageMargin + 4, Look::PageMargin, Look::PageMargin + 4,
                               Look::PageMargin);
    m_stack->setSpacing(GroupGap);
    layout->addLayout(m_stack);
    layout->addStretch();
    setWidget(content);
}

CPropertyGroup* CBrenPropertyGrid::AddGroup(const QString& title) {
    auto* group = new CPropertyGroup(title, m_prompts, widget());
    group->SetEditorNote([this](const PropertyRow& row, const QString& text) {
        return m_noteOf ? m_noteOf(row, text) : QString();
    });
    m_stack->addWidget(group);
    m_groups.push_back(group);
    connect(
        group, &CPropertyGroup::Committed, this,
        [this, group](int row, const PropertyRow& committed) { emit ValueCommitted(row, group, committed); },
        Qt::QueuedConnection);
    connect(
        group, &CPropertyGroup::ValueWanted, this, [this, group](int row) { emit ValueWanted(row, group); },
        Qt::QueuedConnection);
    connect(group, &CPropertyGroup::StepWanted, this, [this, group](int rows) { Step(group, rows); });
    return group;
}

void CBrenPropertyGrid::Step(const CPropertyGroup* from, int rows) {
    std::vector<std::pair<CPropertyGroup*, int>> places;
    int current = -1;
    for (CPropertyGroup* group : m_groups) {
        for (int row = 1; row < group->RowCount(); ++row) {
            if (group == from && row == group->CurrentRow())
                current = static_cast<int>(places.size());
            places.emplace_back(group, row);
        }
    }
    if (places.empty())
        return;
    const qint64 last = static_cast<qint64>(places.size()) - 1;
    const auto [group, row] =
        places.at(static_cast<std::size_t>(std::clamp<qint64>(qint64(current) + rows, 0, last)));
    group->SelectRow(row);
    group->setFocus(Qt::OtherFocusReason);
    const QRect place = group->RowRect(row).translated(group->pos());
    ensureVisible(place.center().x(), place.center().y(), 0, place.height() + GroupGap);
}
