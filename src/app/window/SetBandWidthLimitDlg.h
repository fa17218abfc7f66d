#pragma once

#include <QDialog>
#include <QSpinBox>

class QPushButton;

/// A field for a limit: any integer from 0 to what 32 bits hold, stepped by 5.
class CLimitField : public QAbstractSpinBox {
    Q_OBJECT

public:
    static constexpr int Step = 5;

    explicit CLimitField(const QString& name);

    int Value() const;
    void SetValue(int value);

    void stepBy(int steps) override;
    QValidator::State validate(QString& text, int& position) const override;

protected:
    StepEnabled stepEnabled() const override;
};

/// Asks for the limits of upload and download, in KB/S; 0 is without limit.
class CSetBandWidthLimitDlg : public QDialog {
    Q_OBJECT

public:
    struct Limits {
        int upload = 0;
        int download = 0;
    };

    explicit CSetBandWidthLimitDlg(QWidget* parent = nullptr);

    /// Shows what the service says; the fields take nothing before that.
    void SetLimits(const Limits& limits);
    Limits Wanted() const { return {m_upload->Value(), m_download->Value()}; }

private:
    CLimitField* m_upload;
    CLimitField* m_download;
    QPushButton* m_ok = nullptr;
};
