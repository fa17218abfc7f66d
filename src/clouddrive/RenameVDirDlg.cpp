#include "clouddrive/RenameVDirDlg.h"

#include "service/VirtualDirectories.h"

#include <QLabel>
#include <QLineEdit>

namespace {

QString UsesText(const VDirUses& uses) {
    if (uses.sentences.isEmpty())
        return uses.known ? QString()
                          : CRenameVDirDlg::tr("Not all sync, encrypted and compressed folders that use this "
                                               "directory could be read. They keep the old name.");
    return CRenameVDirDlg::tr("These folders use the directory and keep its old name.") + u'\n' +
           uses.sentences.join(u'\n');
}

} // namespace

CRenameVDirDlg::CRenameVDirDlg(const ServiceClient& service, Reader& reader, QString name, QWidget* parent)
    : CBrenDialog(service, reader, tr("Rename Virtual Directory"), parent), m_old(std::move(name)),
      m_name(new QLineEdit(m_old)) {
    AddRow(tr("&Virtual Directory Name:"), m_name);
    m_uses = AddNote({});
    m_uses->hide();
    ReadWhenShown(
        [name = m_old](const ServiceClient& from, std::stop_token stop) -> std::optional<VDirUses> {
            return ReadVDirUses(from, name, std::move(stop));
        },
        [this](const VDirUses& uses) {
            m_uses->setText(UsesText(uses));
            m_uses->setVisible(!m_uses->text().isEmpty());
        });
}

QString CRenameVDirDlg::Name() const {
    return m_name->text();
}

/// What can be said without the list; that is read when the name is sent.
QString CRenameVDirDlg::Refusal() const {
    return Name() == m_old ? QString() : RenameRefusal(m_old, Name(), {});
}

CBrenDialog::Write CRenameVDirDlg::Changes() const {
    if (Name() == m_old)
        return {};
    return {[before = m_old, after = Name()](const ServiceClient& service, const std::stop_token& stop) {
                const auto existing = service.GetVdirList(stop);
                if (!existing)
                    return NoVdirListText();
                if (QString refusal = RenameRefusal(before, after, *existing); !refusal.isEmpty())
                    return refusal;
                return RenameVDir(service, before, after, stop) ? QString() : tr("Operation failed");
            },
            {}};
}
