#pragma once

#include "page/BrenDialog.h"

class QCheckBox;
class QLabel;

/// Has the service encrypt its profile, or no longer. What a service does not offer is shown and not taken.
class ProfileEncryptionDlg : public CBrenDialog {
    Q_OBJECT

public:
    ProfileEncryptionDlg(const ServiceClient& service, Reader& reader, QWidget* parent);

    /// Whether the service offers it, as far as is known.
    bool IsOffered() const { return m_offered; }

protected:
    Write Changes() const override;

private:
    QCheckBox* m_encrypt;
    QLabel* m_note;
    bool m_offered = false;
    bool m_before = false;
};
