#include "window/CloudSvcPage.h"

#include "look/Look.h"
#include "service/ServiceClient.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>
#include <QShowEvent>
#include <QVBoxLayout>

namespace {

const QString PublishedSetting = QStringLiteral("PublishedToCloudSVC");

} // namespace

CloudSvcPage::CloudSvcPage(const ServiceClient& service, Reader& reader, QWidget* parent)
    : QDialog(parent), m_service(service), m_text(new QLabel), m_change(new QPushButton),
      m_loader(reader, *this) {
    setWindowTitle(tr("Cloud Space"));
    auto* about =
        new QLabel(tr("A computer in the cloud space can be reached by its owner's other computers. The "
                      "background service keeps it there until it is withdrawn."));
    about->setWordWrap(true);
    m_text->setFont(Look::Font(Look::Body, QFont::Bold));
    m_text->setWordWrap(true);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close);
    buttons->addButton(m_change, QDialogButtonBox::ActionRole);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_change, &QPushButton::clicked, this, &CloudSvcPage::Change);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(20, 20, 20, 16);
    layout->setSpacing(12);
    layout->addWidget(m_text);
    layout->addWidget(about);
    layout->addStretch();
    layout->addWidget(buttons);
    setMinimumWidth(420);
    ShowState(State::Asking);
}

void CloudSvcPage::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    if (!event->spontaneous())
        Ask();
}

void CloudSvcPage::Ask() {
    m_loader.Load(
        Lane::Service,
        [service = m_service](std::stop_token stop) { return service.GetSetting(PublishedSetting, stop); },
        [this](const Loaded<ServiceAnswer>& loaded) {
            if (loaded.outcome == LoadOutcome::Cancelled)
                return;
            if (!loaded || SettingStateOf(*loaded) == SettingState::NotRead)
                ShowState(State::Unknown);
            else
                ShowState(SettingFlag(loaded->body) ? State::Published : State::NotPublished);
        });
}

void CloudSvcPage::Change() {
    if (m_state == State::Unknown) {
        ShowState(State::Asking);
        Ask();
        return;
    }
    const bool publish = m_state == State::NotPublished;
    ShowState(State::Asking);
    m_loader.Command(
        Lane::Service,
        [service = m_service, publish](std::stop_token stop) {
            return service.SetBoolSetting(PublishedSetting, publish, stop);
        },
        [this](const Loaded<ServiceAnswer>&) { Ask(); });
}

void CloudSvcPage::ShowState(State state) {
    m_state = state;
    m_change->setEnabled(state != State::Asking);
    switch (state) {
    case State::Asking:
        m_text->setText(tr("Asking the service..."));
        m_change->setText(tr("Publish"));
        break;
    case State::Published:
        m_text->setText(tr("This computer is in the cloud space."));
        m_change->setText(tr("Withdraw"));
        break;
    case State::NotPublished:
        m_text->setText(tr("This computer is not in the cloud space."));
        m_change->setText(tr("Publish"));
        break;
    case State::Unknown:
        m_text->setText(
            tr("The service does not answer, so it is not known whether this computer is in the cloud "
               "space."));
        m_change->setText(tr("Ask again"));
        break;
    }
}
