#include "clouddrive/BVDirMgrDlg.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>

namespace {

QLineEdit* MakeField(const QString& text) {
    auto* field = new QLineEdit(text);
    field->setReadOnly(true);
    field->setCursorPosition(0);
    return field;
}

} // namespace

CBVDirMgrDlg::CBVDirMgrDlg(const VDirRecord& record, QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Virtual Directory Manager"));
    auto* form = new QFormLayout(this);
    form->setContentsMargins(20, 20, 20, 16);
    form->setSpacing(12);
    form->addRow(tr("&Name:"), MakeField(record.name));
    form->addRow(tr("&Login card:"), MakeField(record.safeCardId));
    form->addRow(tr("&Storage provider:"), MakeField(record.spId));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::accept);
    form->addRow(buttons);
    setMinimumWidth(480);
}
