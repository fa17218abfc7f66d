#include "page/SettingsDialog.h"

#include "page/CommandRunner.h"
#include "page/NumberField.h"
#include "service/RequestText.h"

#include <QCheckBox>
#include <QLineEdit>

#include <limits>

namespace {

/// None unless all of them were read.
std::optional<std::vector<QString>>
ReadAll(const ServiceClient& service, const std::vector<TextSetting>& settings, const std::stop_token& stop) {
    std::vector<QString> values;
    for (const TextSetting& setting : settings) {
        const SettingValue<QString> read = ReadSetting(service, setting, stop);
        if (!read.WasRead())
            return {};
        values.push_back(TypedText(read.value, setting.type));
    }
    return values;
}

/// As in "Upload limit (KB/S)" of "&Upload limit (KB/S):".
QString SpokenLabel(QString label) {
    label.remove(u'&');
    return label.endsWith(u':') ? label.chopped(1) : label;
}

} // namespace

SettingsDialog::SettingsDialog(const ServiceClient& service, Reader& reader, const QString& title,
                               QWidget* parent)
    : CBrenDialog(service, reader, title, parent) {}

void SettingsDialog::AddField(Field field) {
    field.label = SpokenLabel(field.label);
    m_settingFields.push_back(std::move(field));
    ReadWhenShown(
        [settings = Settings()](const ServiceClient& from, const std::stop_token& stop) {
            return ReadAll(from, settings, stop);
        },
        [this](const std::vector<QString>& values) { Show(values); });
}

QLineEdit* SettingsDialog::AddText(const Setting<QString>& setting, const QString& label, Secrecy secrecy) {
    auto* field = new QLineEdit;
    field->setMaxLength(std::numeric_limits<int>::max());
    field->setEchoMode(secrecy == Secrecy::Secret ? QLineEdit::Password : QLineEdit::Normal);
    connect(field, &QLineEdit::textEdited, this, &SettingsDialog::OnEdited);
    AddRow(label, field);
    AddField({setting.AsText(), label, secrecy, [field] { return field->text(); },
              [field](const QString& text) { field->setText(text); }});
    return field;
}

NumberField* SettingsDialog::AddNumber(const Setting<int>& setting, const QString& label) {
    auto* field = new NumberField;
    AddRow(label, field);
    AddField({setting.AsText(), label, Secrecy::Plain, [field] { return field->text(); },
              [field](const QString& text) { field->SetValue(text.toInt()); }});
    return field;
}

QCheckBox* SettingsDialog::AddCheck(const Setting<bool>& setting, const QString& label) {
    auto* field = new QCheckBox(label);
    AddRow(field);
    AddField({setting.AsText(), label, Secrecy::Plain,
              [field] { return Setting<bool>::TextOf(field->isChecked()); },
              [field](const QString& text) { field->setChecked(SettingFlag(text.toUtf8())); }});
    return field;
}

std::vector<TextSetting> SettingsDialog::Settings() const {
    std::vector<TextSetting> settings;
    for (const Field& field : m_settingFields)
        settings.push_back(field.setting);
    return settings;
}

void SettingsDialog::Show(const std::vector<QString>& values) {
    for (std::size_t index = 0; index < values.size(); ++index) {
        Field& field = m_settingFields[index];
        field.show(values[index]);
        field.before = field.text();
    }
}

std::vector<SettingsDialog::SettingWrite> SettingsDialog::ChangedFields() const {
    std::vector<SettingWrite> changed;
    for (const Field& field : m_settingFields) {
        if (field.text() != field.before)
            changed.push_back({field.setting, field.text(), field.label, field.secrecy});
    }
    return changed;
}

QString SettingsDialog::Refusal() const {
    for (const SettingWrite& write : ChangedFields()) {
        bool isInteger = write.setting.type != ServiceClient::ValueType::Integer;
        if (!isInteger)
            write.text.toInt(&isInteger);
        QString refusal = LengthRefusal(write.setting.name, write.text);
        if (refusal.isEmpty() && write.secrecy == Secrecy::Secret)
            refusal = QueryRefusal(write.text);
        if (!isInteger)
            refusal = tr("A whole number is needed.");
        if (!refusal.isEmpty())
            return tr("\"%1\" cannot be saved. %2").arg(write.label, refusal);
    }
    return {};
}

void SettingsDialog::OnEdited() {
    QString texts;
    for (const SettingWrite& write : ChangedFields())
        texts += write.text + u' ';
    ShowRemark(QueryRemark(texts));
}

CBrenDialog::Write SettingsDialog::InOrder(const std::vector<SettingWrite>& writes) {
    if (writes.empty())
        return {};
    Write all;
    for (const SettingWrite& write : writes)
        all.settings.append(write.setting.name);
    all.run = [writes](const ServiceClient& service, const std::stop_token& stop) {
        for (const SettingWrite& write : writes) {
            const ServiceAnswer answer = WriteSetting(service, write.setting, write.text, stop);
            if (!answer)
                return tr("\"%1\" was not saved: %2. OK tries again.").arg(write.label, WhyNotDone(answer));
            if (write.secrecy != Secrecy::Secret)
                continue;
            const KeptSecret kept = CheckSecret(service, write.setting, write.text, stop);
            if (kept == KeptSecret::NotTold)
                return tr("\"%1\" was written, but the service did not tell what it keeps.").arg(write.label);
            if (kept == KeptSecret::Otherwise)
                return tr("The password was not stored as typed.");
        }
        return QString();
    };
    return all;
}
