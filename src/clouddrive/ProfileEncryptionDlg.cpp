#include "clouddrive/ProfileEncryptionDlg.h"

#include "service/KnownSettings.h"
#include "service/ServiceExtensions.h"

#include <QCheckBox>
#include <QLabel>

namespace {

struct Offer {
    bool offered = false;
    bool encrypted = false;
};

/// None while the service does not tell what holds.
std::optional<Offer> ReadOffer(const ServiceClient& service, const std::stop_token& stop) {
    const std::optional<bool> taken = TakesConsoleRecords(service, stop);
    if (!taken)
        return {};
    if (!*taken)
        return Offer();
    const SettingValue<bool> encrypted = ReadSetting(service, Settings::ProfileEncryption, stop);
    return encrypted.WasRead() ? std::optional(Offer{true, encrypted.value}) : std::nullopt;
}

} // namespace

ProfileEncryptionDlg::ProfileEncryptionDlg(const ServiceClient& service, Reader& reader, QWidget* parent)
    : CBrenDialog(service, reader, tr("Profile Encryption"), parent),
      m_encrypt(new QCheckBox(tr("&Encrypt the profile"))) {
    AddRow(m_encrypt);
    m_note = AddNote(tr("The profile holds what the service knows of its virtual directories."));
    ReadWhenShown(&ReadOffer, [this](const Offer& offer) {
        m_offered = offer.offered;
        m_before = offer.encrypted;
        m_encrypt->setChecked(offer.encrypted);
        m_encrypt->setEnabled(offer.offered);
        if (!offer.offered)
            m_note->setText(NoConsoleRecordsText() + u' ' +
                            tr("Whether its profile is encrypted is not known here."));
    });
}

CBrenDialog::Write ProfileEncryptionDlg::Changes() const {
    const bool wanted = m_encrypt->isChecked();
    if (!m_offered || wanted == m_before)
        return {};
    return {[wanted](const ServiceClient& service, const std::stop_token& stop) {
                if (!WriteSetting(service, Settings::ProfileEncryption, wanted, stop))
                    return tr("It was not saved, because the service did not take it. OK tries again.");
                const SettingValue<bool> back = ReadSetting(service, Settings::ProfileEncryption, stop);
                if (!back.WasRead())
                    return tr("It was written, but the service did not tell what it keeps.");
                return back.value == wanted ? QString()
                                            : tr("The service keeps another choice than was written.");
            },
            {QString::fromLatin1(Settings::ProfileEncryption.name)}};
}
