#include "development/ListGallery.h"

#include "list/BrenListCtrl.h"
#include "list/FindBar.h"
#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QGridLayout>
#include <QLabel>

using namespace Qt::Literals::StringLiterals;

namespace {

QString IconCell(int icon, const QString& words) {
    return u"#ICON:%1#@@%2"_s.arg(icon).arg(words);
}

void FillSummary(CBrenListCtrl& list) {
    list.AddColumn(u"Info"_s, 80);
    list.AddColumn(u"Detail"_s, 150);
    list.SetUnshadedColumn(1);
    const QStringList details{u"Task Type|Mirrored Backup"_s,
                              u"Status|#Progress:412 1280@@412 of 1280 processed, 4 running"_s, u"|"_s,
                              u"Recurring|_MTWTF_"_s};
    std::vector<ListRow> rows;
    for (const QString& detail : details)
        rows.emplace_back(QString::number(rows.size()), detail.split(u'|'));
    list.SetRows(std::move(rows));
}

} // namespace

void FillCellGallery(CBrenListCtrl& list) {
    list.SetTableKind(TableKind::Record);
    list.SetMultiSelection(true);
    list.SetAccentColumn(4);
    list.AddColumn({}, 24);
    list.AddColumn(u"Cell"_s, 150);
    list.AddColumn(u"Shown"_s, 260);
    list.AddColumn(u"Size"_s, 90, Qt::AlignRight);
    list.AddColumn(u"Note"_s, 100);
    list.AddColumn({}, 32);

    const QString arabic = u"\u202B\u0645\u0644\u0641\u202C a\u200Bb"_s;
    const std::vector<std::pair<QString, QString>> shown{
        {u"Plain"_s, u"/home/Photos/2026/11/IMG_2043.dng"_s},
        {u"Plain, ellipsis"_s, u"Uploading..."_s},
        {u"Progress"_s, u"#Progress:3 4@@3 of 4 processed, 1 running"_s},
        {u"Progress, no caption"_s, u"#progress:15 10"_s},
        {u"Progress, beyond 2 GiB"_s, u"#Progress:-1294967296 -294967296@@beyond"_s},
        {u"Progress of nothing"_s, u"#Progress:5 0"_s},
        {u"Struck"_s, u"##Deleted version of a file"_s},
        {u"Green"_s, u"#COLOR:GREEN"_s},
        {u"Red"_s, u"#COLOR:RED"_s},
        {u"Yellow"_s, u"#color:yellow"_s},
        {u"No colour"_s, u"#COLOR:BLUE"_s},
        {u"Icon"_s, IconCell(UploadIcon, u"Uploading..."_s)},
        {u"No icon"_s, IconCell(0, u"Uploading..."_s)},
        {u"Long"_s, QString(60000, u'x')},
        {u"Right to left"_s, arabic},
        {u"Empty"_s, {}},
    };
    std::vector<ListRow> rows;
    for (const auto& [name, cell] : shown) {
        const int row = int(rows.size());
        const QString mark = IconCell(row % 3 == 2 ? DownloadIcon : UploadIcon, u"Uploading..."_s);
        const QString size = u"%1.%2 MB"_s.arg(row * 7 % 31).arg(row * 37 % 1000, 3, 10, QChar(u'0'));
        rows.emplace_back(
            name,
            QStringList{mark, name, cell, size, row % 4 ? QString() : u"retry 2"_s,
                        IconCell(DeleteIcon, u"Click to delete the failed sub-task"_s)},
            QStringList{{}, {}, {}, NumberSortKey(row * 7 % 31 * 1000 + row * 37 % 1000), {}, {}});
    }
    list.SetRows(std::move(rows));
}

QWidget* MakeListGallery(UserPrompts& prompts, QWidget* parent) {
    auto* sheet = new QWidget(parent);
    auto* grid = new QGridLayout(sheet);
    grid->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    grid->setSpacing(Look::TextInset);
    grid->setRowStretch(0, 2);
    grid->setRowStretch(1, 1);

    auto* cells = new CBrenListCtrl(prompts);
    FillCellGallery(*cells);
    cells->setAccessibleName(u"Cells"_s);
    cells->RememberWidths(u"Gallery"_s);
    grid->addWidget(FindBar::Above(cells), 0, 0, 1, 3);

    auto* summary = new CBrenListCtrl(prompts);
    FillSummary(*summary);
    summary->setAccessibleName(u"Summary"_s);
    grid->addWidget(summary, 1, 0);

    auto* plain = new CBrenListCtrl(prompts);
    plain->SetCustomHeader(false);
    plain->SetRowShading(false);
    FillSummary(*plain);
    plain->setAccessibleName(u"Plain"_s);
    grid->addWidget(plain, 1, 1);

    auto* empty = new CBrenListCtrl(prompts);
    empty->setAccessibleName(u"Empty"_s);
    empty->AddColumn(u"Time"_s, 80);
    empty->AddColumn(u"Message"_s, 100);
    empty->SetEmptyText(u"The task has not run yet."_s);
    grid->addWidget(empty, 1, 2);
    return sheet;
}

QWidget* MakeIconSheet(QWidget* parent) {
    constexpr int columns = 8;
    auto* sheet = new QWidget(parent);
    auto* grid = new QGridLayout(sheet);
    grid->setSpacing(Look::TextInset);
    int cell = 0;
    for (const QString& name : IconRegistry::Names()) {
        auto* picture = new QLabel(sheet);
        picture->setPixmap(IconRegistry::Icon(name).pixmap(QSize(24, 24), sheet->devicePixelRatioF()));
        picture->setAlignment(Qt::AlignCenter);
        auto* caption = new QLabel(name, sheet);
        caption->setFont(Look::Font(Look::Caption));
        caption->setAlignment(Qt::AlignCenter);
        grid->addWidget(picture, cell / columns * 2, cell % columns);
        grid->addWidget(caption, cell / columns * 2 + 1, cell % columns);
        ++cell;
    }
    return sheet;
}
