#pragma once

#include "grid/PropertyModel.h"

#include <QLineEdit>

/// The in-place editor of a text or an integer (32 bits, signed). Takes texts of any length; what a single
/// line cannot show of them is kept.
class CDynamicEdit : public QLineEdit {
    Q_OBJECT

public:
    CDynamicEdit(const QString& text, PropertyType type, QWidget* parent);

    /// Why the text is not taken; empty when it is.
    QString Refusal() const;

    /// Adds a button with which a folder is chosen in place of being typed.
    void OfferFolder();

signals:
    void FolderWanted();

private:
    PropertyType m_type;
};
