#pragma once

#include <QAbstractSpinBox>

#include <optional>

/// A field for an integer from 0 to what 32 bits hold, stepped by 5. What was put into it is kept as it
/// stands, also when it is below 0.
class NumberField : public QAbstractSpinBox {
    Q_OBJECT

public:
    static constexpr int Step = 5;

    NumberField();

    /// None while the field holds no integer.
    std::optional<int> Value() const;
    void SetValue(int value);

    void stepBy(int steps) override;
    QValidator::State validate(QString& text, int& position) const override;

protected:
    StepEnabled stepEnabled() const override;
};
