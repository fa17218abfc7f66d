#include "cards/CardLayout.h"

#include <algorithm>

namespace {

constexpr quint32 LinkHeight = 14;
constexpr quint32 LinkWidth = 70;

/// `from` less `amount`, not below 0.
quint32 Less(quint32 from, quint64 amount) {
    return amount < from ? from - static_cast<quint32>(amount) : 0;
}

CardRect PlaceExpanded(const CardGeometry& geometry, quint32 width, quint32 height) {
    const quint32 left = Less(height, quint64(3) * geometry.topMargin);
    const quint32 fixed = geometry.expandedHeight;
    return {geometry.leftMargin, geometry.topMargin, width,
            fixed != 0 ? fixed : std::max(left, geometry.minExpandedHeight)};
}

void PlacePaging(CardLayout& layout, quint32 width, quint32 y) {
    layout.previousLink = {Less(width, 250), y, LinkWidth, LinkHeight};
    layout.pageLabel = {Less(width, 170), y, LinkWidth, LinkHeight};
    layout.nextLink = {Less(width, 90), y, LinkWidth, LinkHeight};
    layout.showPrevious = layout.currentPage != 0 && layout.pageCount != 0;
    layout.showPageLabel = layout.pageCount >= 2;
    layout.showNext = layout.currentPage < Less(layout.pageCount, 1);
}

} // namespace

std::optional<CardRect> CardLayout::PlaceOf(quint32 index) const {
    if (expanded)
        return *expanded == index ? std::optional(expandedRect) : std::nullopt;
    if (index < firstShown || index - firstShown >= shownCount)
        return {};
    CardRect rect = firstRect;
    rect.y += (index - firstShown) * stride;
    return rect;
}

std::optional<CardLayout> LayOutCards(const CardLayoutRequest& request) {
    const CardGeometry& geometry = request.geometry;
    const quint64 stride = quint64(geometry.cardHeight) + geometry.gap;
    const quint64 perPage = stride == 0 ? 0 : Less(request.height, quint64(2) * geometry.topMargin) / stride;
    if (perPage == 0)
        return {};

    CardLayout layout;
    layout.stride = static_cast<quint32>(stride);
    layout.cardsPerPage = static_cast<quint32>(perPage);
    layout.pageCount =
        request.count / layout.cardsPerPage + (request.count % layout.cardsPerPage != 0 ? 1 : 0);
    layout.currentPage = std::min(request.currentPage, Less(layout.pageCount, 1));

    const quint32 width = Less(request.width, quint64(2) * geometry.leftMargin);
    const quint32 bottom = Less(request.height, geometry.topMargin);
    if (request.expanded) {
        layout.expanded = request.expanded;
        layout.expandedRect = PlaceExpanded(geometry, width, request.height);
        layout.hiddenCount = Less(request.count, 1);
    } else {
        layout.firstShown = layout.currentPage * layout.cardsPerPage;
        layout.shownCount = std::min(layout.cardsPerPage, request.count - layout.firstShown);
        layout.firstRect = {geometry.leftMargin, geometry.topMargin, width, geometry.cardHeight};
    }
    layout.hiddenLink = {geometry.leftMargin, bottom, width, LinkHeight};
    if (layout.hiddenCount == 0)
        PlacePaging(layout, request.width, bottom);
    return layout;
}
