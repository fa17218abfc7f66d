#include "page/ModeBox.h"

#include "look/Look.h"
#include "page/CommandRunner.h"
#include "page/Console.h"

#include <QCheckBox>
#include <QHBoxLayout>
#include <QLabel>

ModeBox::ModeBox(const Console& console, const Setting<int>& setting, QWidget* parent)
    : QWidget(parent), m_service(console.service), m_setting(setting),
      m_advanced(new QCheckBox(tr("Advanced Mode"))), m_unsaved(new QLabel(tr("not saved"))),
      m_loader(console.reader, *this) {
    m_advanced->setFont(Look::Font(Look::Small));
    m_unsaved->setFont(Look::Font(Look::Small));
    Look::SetInk(*m_unsaved, Look::Failed);
    m_unsaved->hide();
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_unsaved);
    row->addWidget(m_advanced);
    connect(m_advanced, &QCheckBox::toggled, this, &ModeBox::Write);
}

bool ModeBox::IsAdvanced() const {
    return m_advanced->isChecked();
}

void ModeBox::Read() {
    if (m_known)
        return;
    m_loader.Load(
        Lane::Service,
        [service = m_service, setting = m_setting](std::stop_token stop) -> std::optional<bool> {
            const SettingValue<int> mode = ReadSetting(service, setting, std::move(stop));
            return mode.WasRead() ? std::optional(mode.value != 0) : std::nullopt;
        },
        [this](const Loaded<bool>& advanced) {
            if (!advanced || m_known)
                return;
            m_known = true;
            if (*advanced == IsAdvanced()) // then all is shown as it should be, and not read twice
                return;
            const QSignalBlocker asRead(m_advanced);
            m_advanced->setChecked(*advanced);
            emit Changed(*advanced);
        });
}

void ModeBox::Write(bool advanced) {
    m_known = true;
    m_loader.Command(
        Lane::Service,
        [service = m_service, setting = m_setting, advanced](std::stop_token stop) {
            return WriteSetting(service, setting, advanced ? 1 : 0, std::move(stop));
        },
        [this](const Loaded<ServiceAnswer>& answer) { EndWrite(answer.value.value_or(ServiceAnswer())); });
    emit Changed(advanced);
}

/// The status line may be another panel's; the words beside the box stay.
void ModeBox::EndWrite(const ServiceAnswer& answer) {
    const bool wasSaved = m_unsaved->isHidden();
    const QString failure =
        answer ? QString() : tr("Advanced Mode was not saved: %1").arg(WhyNotDone(answer));
    m_unsaved->setVisible(!answer);
    m_unsaved->setToolTip(Look::ToolTip(failure));
    for (QWidget* told : std::initializer_list<QWidget*>{m_unsaved, m_advanced})
        told->setAccessibleDescription(failure);
    if (!answer)
        emit NotSaved(failure);
    else if (!wasSaved)
        emit SavedAgain();
}
