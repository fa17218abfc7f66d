#pragma once

#include "grid/BrenPropertyGrid.h"
#include "grid/DynamicCombo.h"
#include "grid/DynamicEdit.h"
#include "support/PageFixture.h"

struct SettingsFixture : PageFixture<> {
    QStringList Written() const {
        return service.RequestLines().filter(QRegularExpression(QStringLiteral("^PUT ")));
    }
    QString Stored(const QString& name) {
        return QString::fromStdString(service->Setting(name.toStdString()).value_or("(none)"));
    }
};

/// A row of a page's grid.
struct Place {
    CPropertyGroup* group = nullptr;
    int row = 0;

    explicit operator bool() const { return group != nullptr; }
    PropertyRow operator*() const { return group ? *group->GetRow(row) : PropertyRow(); }
};

inline std::vector<Place> Rows(const QWidget& page) {
    std::vector<Place> places;
    for (CPropertyGroup* group : page.findChild<CBrenPropertyGrid*>()->Groups())
        for (int row = 1; row < group->RowCount(); ++row)
            places.push_back({group, row});
    return places;
}

inline Place FindRow(const QWidget& page, const QString& key) {
    for (const Place& place : Rows(page))
        if ((*place).key == key)
            return place;
    return {};
}

inline QString Value(const QWidget& page, const QString& key) {
    const Place place = FindRow(page, key);
    return place ? (*place).value : QStringLiteral("(no row)");
}

/// Opens the row's editor, gives it the text and presses Enter; the page has heard of it afterwards.
inline bool Edit(const QWidget& page, const QString& key, const QString& text) {
    const Place place = FindRow(page, key);
    if (!place || !place.group->OpenEditor(place.row))
        return false;
    QWidget* editor = place.group->Editor();
    if (auto* edit = qobject_cast<CDynamicEdit*>(editor))
        edit->setText(text);
    else
        qobject_cast<CDynamicCombo*>(editor)->setCurrentText(text);
    QTest::keyClick(editor, Qt::Key_Return);
    QCoreApplication::processEvents();
    return true;
}
