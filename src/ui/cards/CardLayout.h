#pragma once

#include <QtGlobal>

#include <optional>

/// Where the cards of a list stand: arithmetic on unsigned pixels. What would fall below 0 is 0.

struct CardGeometry {
    quint32 topMargin = 20;
    quint32 leftMargin = 12;
    quint32 gap = 8;
    quint32 expandedHeight = 0; ///< 0: what the list leaves
    quint32 cardHeight = 76;
    quint32 minExpandedHeight = 0;
};

struct CardRect {
    quint32 x = 0;
    quint32 y = 0;
    quint32 width = 0;
    quint32 height = 0;

    bool operator==(const CardRect&) const = default;
};

struct CardLayoutRequest {
    CardGeometry geometry;
    quint32 width = 0;
    quint32 height = 0;
    quint32 count = 0;
    quint32 currentPage = 0;
    std::optional<quint32> expanded; ///< index of the expanded card
};

struct CardLayout {
    quint32 cardsPerPage = 0;
    quint32 pageCount = 0;
    quint32 currentPage = 0;

    std::optional<quint32> expanded;
    CardRect expandedRect;
    quint32 firstShown = 0; ///< the shown cards while none is expanded
    quint32 shownCount = 0;
    CardRect firstRect; ///< the next ones stand `stride` lower each
    quint32 stride = 0;

    quint32 hiddenCount = 0; ///< by the expansion; paging is shown only when 0
    CardRect hiddenLink;
    CardRect previousLink;
    CardRect pageLabel;
    CardRect nextLink;
    bool showPrevious = false;
    bool showPageLabel = false;
    bool showNext = false;

    /// The place of a card; none when it is hidden.
    std::optional<CardRect> PlaceOf(quint32 index) const;
};

/// Nothing when there is no room for a single card; then all stays as it was.
std::optional<CardLayout> LayOutCards(const CardLayoutRequest& request);
