#pragma once

#include "service/ServiceClient.h"

#include <QLineEdit>

#include <optional>

/// The in-place editor of a text or an integer (32 bits, signed). Takes texts of any length; what a single
/// line cannot show of them is kept.
class CDynamicEdit : public QLineEdit {
    Q_OBJECT

public:
    CDynamicEdit(const QString& text, ServiceClient::ValueType type, QWidget* parent);

    /// None when an integer is wanted and there is none.
    std::optional<QString> Text() const;
};
