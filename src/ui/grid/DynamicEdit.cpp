#include "grid/DynamicEdit.h"

#include "look/IconRegistry.h"

#include <QAction>

#include <limits>

using namespace Qt::Literals::StringLiterals;

CDynamicEdit::CDynamicEdit(const QString& text, PropertyType type, QWidget* parent)
    : QLineEdit(parent), m_type(type) {
    setMaxLength(std::numeric_limits<int>::max());
    setText(text);
    selectAll();
}

QString CDynamicEdit::Refusal() const {
    bool isInteger = m_type != PropertyType::Integer;
    if (!isInteger)
        text().toInt(&isInteger);
    return isInteger ? QString() : tr("Not taken: a whole number from -2147483648 to 2147483647 is needed.");
}

void CDynamicEdit::OfferFolder() {
    QAction* choose = addAction(IconRegistry::Icon(u"folder-open"_s), TrailingPosition);
    choose->setText(tr("Choose a folder"));
    choose->setToolTip(choose->text());
    connect(choose, &QAction::triggered, this, &CDynamicEdit::FolderWanted);
}
