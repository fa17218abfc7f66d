#pragma once

#include "page/BrenDialog.h"
#include "service/Setting.h"

#include <vector>

class NumberField;
class QCheckBox;
class QLineEdit;

/// A dialog of settings: each field stands for one. OK writes those that were changed, in the fields' order.
class SettingsDialog : public CBrenDialog {
    Q_OBJECT

protected:
    enum class Secrecy { Plain, Secret };

    struct Field {
        TextSetting setting;
        QString label;
        Secrecy secrecy = Secrecy::Plain;
        std::function<QString()> text;            ///< what the field holds
        std::function<void(const QString&)> show; ///< puts a value as read into it
        QString before = {};                      ///< what it held when it was read
    };

    struct SettingWrite {
        TextSetting setting;
        QString text;
        QString label;
        Secrecy secrecy = Secrecy::Plain;
    };

    SettingsDialog(const ServiceClient& service, Reader& reader, const QString& title, QWidget* parent);

    QLineEdit* AddText(const Setting<QString>& setting, const QString& label,
                       Secrecy secrecy = Secrecy::Plain);
    NumberField* AddNumber(const Setting<int>& setting, const QString& label);
    QCheckBox* AddCheck(const Setting<bool>& setting, const QString& label);
    void AddField(Field field);

    /// The fields that hold something else than was read.
    std::vector<SettingWrite> ChangedFields() const;

    /// Writes in order, up to the first that fails. A secret is read back and compared.
    static Write InOrder(const std::vector<SettingWrite>& writes);

    QString Refusal() const override;
    Write Changes() const override { return InOrder(ChangedFields()); }

private:
    std::vector<TextSetting> Settings() const;
    void Show(const std::vector<QString>& values);
    void OnEdited();

    std::vector<Field> m_settingFields;
};
