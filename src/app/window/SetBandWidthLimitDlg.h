#pragma once

#include <QDialog>
#include <QSpinBox>

#include <optional>

class QPushButton;

/// A field for a limit: any integer from 0 to what 32 bits hold, stepped by 5.
class CLimitField : public QAbstractSpinBox {
    Q_OBJECT

public:
    static constexpr int Step = 5;

    explicit CLimitField(const QString& name);

    int Value() const;
    void SetValue(int value);
    /// Shows a limit that was read, or in grey that it was not.
    void ShowRead(const std::optional<int>& value);
    /// None of a limit that was not read and that nobody has given.
    std::optional<int> Wanted() const;

    void stepBy(int steps) override;
    QValidator::State validate(QString& text, int& position) const override;

protected:
    StepEnabled stepEnabled() const override;

private:
    bool m_unread = false;
};

/// Asks for the limits of upload and download, in KB/S; 0 is without limit.
class CSetBandWidthLimitDlg : public QDialog {
    Q_OBJECT

public:
    /// None: could not be read, or is to stay as it is.
    struct Limits {
        std::optional<int> upload;
        std::optional<int> download;
    };

    explicit CSetBandWidthLimitDlg(QWidget* parent = nullptr);

    /// Shows what the service says; the fields take nothing before that.
    void SetLimits(const Limits& limits);
    Limits Wanted() const { return {m_upload->Wanted(), m_download->Wanted()}; }

private:
    CLimitField* m_upload;
    CLimitField* m_download;
    QPushButton* m_ok = nullptr;
};
