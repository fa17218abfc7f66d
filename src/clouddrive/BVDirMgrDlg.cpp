#include "clouddrive/BVDirMgrDlg.h"

#include "look/Look.h"
#include "page/NumberField.h"
#include "service/RequestText.h"
#include "service/VirtualDirectories.h"

#include <QCheckBox>
#include <QLabel>

using namespace Qt::Literals::StringLiterals;

CBVDirMgrDlg::CBVDirMgrDlg(const ServiceClient& service, Reader& reader, const VDirRecord& record,
                           const QString& providerName, QWidget* parent)
    : SettingsDialog(service, reader, tr("Virtual Directory Manager"), parent), m_name(record.name) {
    AddFact(tr("Name:"), record.name);
    if (providerName.isEmpty())
        AddFact(tr("Storage provider:"), record.spId);
    else
        AddFact(tr("Storage provider:"), providerName, record.spId);
    AddFact(tr("Login card:"), record.safeCardId);
    auto* chunks = new QCheckBox(tr("Send files in &chunks"));
    AddRow(chunks);
    AddField({ChunkSetting(m_name), chunks->text(), Secrecy::Plain,
              [chunks] { return Setting<bool>::TextOf(chunks->isChecked()); },
              [chunks](const QString& text) { chunks->setChecked(SettingFlag(text.toUtf8())); }});
    auto* size = new NumberField;
    AddRow(tr("Chunk &size (MB):"), size);
    AddField({ChunkSizeSetting(m_name), tr("Chunk size (MB)"), Secrecy::Plain,
              [size] { return size->text(); },
              [size](const QString& text) { size->SetValue(ChunkSize(text)); }});
}

void CBVDirMgrDlg::AddFact(const QString& label, const QString& text, const QString& toolTip) {
    if (text.isEmpty())
        return;
    auto* fact = new QLabel(text);
    fact->setTextFormat(Qt::PlainText);
    fact->setWordWrap(true);
    fact->setTextInteractionFlags(Qt::TextSelectableByMouse);
    fact->setToolTip(Look::ToolTip(toolTip));
    AddRow(label, fact);
}

QString CBVDirMgrDlg::Refusal() const {
    const QStringList lost = LostInPath(m_name);
    if (!lost.isEmpty() && !ChangedFields().empty())
        return tr("A request cannot carry %1 in the name of a setting.").arg(lost.join(u", "_s));
    return SettingsDialog::Refusal();
}

CBrenDialog::Write CBVDirMgrDlg::Changes() const {
    const std::vector<SettingWrite> changed = ChangedFields();
    Write write = InOrder(changed);
    if (changed.empty())
        return write;
    write.run = [changed, name = m_name](const ServiceClient& service, const std::stop_token& stop) {
        for (const SettingWrite& each : changed) {
            const ServiceAnswer answer =
                each.setting.type == ServiceClient::ValueType::Boolean
                    ? WriteChunkEnabled(service, name, SettingFlag(each.text.toUtf8()), stop)
                    : WriteChunkSize(service, name, each.text.toInt(), stop);
            if (!answer)
                return tr("\"%1\" was not saved, because the service did not take it. OK tries again.")
                    .arg(each.label);
        }
        return QString();
    };
    return write;
}
