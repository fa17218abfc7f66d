#include "grid/DynamicCombo.h"

#include <QWheelEvent>

using namespace Qt::Literals::StringLiterals;

CDynamicCombo::CDynamicCombo(const QString& text, QWidget* parent) : QComboBox(parent) {
    addItems({u"True"_s, u"False"_s});
    setCurrentIndex(findText(text, Qt::MatchFixedString));
}

void CDynamicCombo::hidePopup() {
    QComboBox::hidePopup();
    // The choice arrives after the list is hidden.
    QMetaObject::invokeMethod(this, &CDynamicCombo::ListClosed, Qt::QueuedConnection);
}

void CDynamicCombo::wheelEvent(QWheelEvent* event) {
    event->ignore();
}
