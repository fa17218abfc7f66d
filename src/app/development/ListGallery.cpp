#include "development/ListGallery.h"

#include "list/BrenListCtrl.h"
#include "list/FindBar.h"
#include "look/IconRegistry.h"
#include "look/Look.h"

#include <QGridLayout>
#include <QLabel>

namespace {

QString IconCell(int icon, const QString& words) {
    return QStringLiteral("#ICON:%1#@@%2").arg(icon).arg(words);
}

void FillSummary(CBrenListCtrl& list) {
    list.AddColumn(QStringLiteral("Info"), 80);
    list.AddColumn(QStringLiteral("Detail"), 150);
    list.SetUnshadedColumn(1);
    const QStringList details{QStringLiteral("Task Type|Mirrored Backup"),
                              QStringLiteral("Status|#Progress:412 1280@@412 of 1280 processed, 4 running"),
                              QStringLiteral("|"), QStringLiteral("Recurring|_MTWTF_")};
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
    list.AddColumn(QStringLiteral("Cell"), 150);
    list.AddColumn(QStringLiteral("Shown"), 260);
    list.AddColumn(QStringLiteral("Size"), 90, Qt::AlignRight);
    list.AddColumn(QStringLiteral("Note"), 100);
    list.AddColumn({}, 32);
    
    const QString arabic = QStringLiteral("\u202B\u0645\u0644\u0641\u202C a\u200Bb");
    const std::vector<std::pair<QString, QString>> shown{
        {QStringLiteral("Plain"), QStringLiteral("/home/Photos/2026/11/IMG_2043.dng")},
        {QStringLiteral("Plain, ellipsis"), QStringLiteral("Uploading...")},
        {QStringLiteral("Progress"), QStringLiteral("#Progress:3 4@@3 of 4 processed, 1 running")},
        {QStringLiteral("Progress, no caption"), QStringLiteral("#progress:15 10")},
        {QStringLiteral("Progress, beyond 2 GiB"),
         QStringLiteral("#Progress:-1294967296 -294967296@@beyond")},
        {QStringLiteral("Progress of nothing"), QStringLiteral("#Progress:5 0")},
        {QStringLiteral("Struck"), QStringLiteral("##Deleted version of a file")},
        {QStringLiteral("Green"), QStringLiteral("#COLOR:GREEN")},
        {QStringLiteral("Red"), QStringLiteral("#COLOR:RED")},
        {QStringLiteral("Yellow"), QStringLiteral("#color:yellow")},
        {QStringLiteral("No colour"), QStringLiteral("#COLOR:BLUE")},
        {QStringLiteral("Icon"), IconCell(UploadIcon, QStringLiteral("Uploading..."))},
        {QStringLiteral("No icon"), IconCell(0, QStringLiteral("Uploading..."))},
        {QStringLiteral("Long"), QString(60000, u'x')},
        {QStringLiteral("Right to left"), arabic},
        {QStringLiteral("Empty"), {}},
    };
    std::vector<ListRow> rows;
    for (const auto& [name, cell] : shown) {
        const int row = int(rows.size());
        const QString mark =
            IconCell(row % 3 == 2 ? DownloadIcon : UploadIcon, QStringLiteral("Uploading..."));
        const QString size =
            QStringLiteral("%1.%2 MB").arg(row * 7 % 31).arg(row * 37 % 1000, 3, 10, QChar(u'0'));
        rows.emplace_back(
            name,
            QStringList{mark, name, cell, size, row % 4 ? QString() : QStringLiteral("retry 2"),
                        IconCell(DeleteIcon, QStringLiteral("Click to delete the failed sub-task"))},
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
    cells->RememberWidths(QStringLiteral("Gallery"));
    grid->addWidget(FindBar::Above(cells), 0, 0, 1, 3);

    auto* summary = new CBrenListCtrl(prompts);
    FillSummary(*summary);
    grid->addWidget(summary, 1, 0);

    auto* plain = new CBrenListCtrl(prompts);
    plain->SetCustomHeader(false);
    plain->SetRowShading(false);
    FillSummary(*plain);
    grid->addWidget(plain, 1, 1);

    auto* empty = new CBrenListCtrl(prompts);
    empty->AddColumn(QStringLiteral("Time"), 80);
    empty->AddColumn(QStringLiteral("Message"), 100);
    empty->SetEmptyText(QStringLiteral("The task has not run yet."));
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
