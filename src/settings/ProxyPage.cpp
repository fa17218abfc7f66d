#include "settings/ProxyPage.h"

#include "page/NoticeLine.h"
#include "service/RequestText.h"
#include "zep/Mui.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

enum Choice { NothingChosen = -1, DisableProxy, CustomProxy };
enum Field { Address, Port, User, Password, Bypass };

const QString TypeSetting = u"ProxyType"_s;
const QString SavedTypeSetting = u"ProxyTypeChanged"_s;
const QStringList FieldSettings{u"ProxyAddr"_s, u"ProxyPort"_s, u"ProxyUser"_s, u"ProxyPwd"_s,
                                u"ProxyBypass"_s};

} // namespace

CProxyPage::CProxyPage(const ServiceClient& service, Reader& reader, QWidget* parent)
    : QDialog(parent), m_service(service), m_choice(new QComboBox), m_explanation(new QLabel),
      m_notice(new NoticeLine), m_loader(reader, *this) {
    setWindowTitle(tr("Proxy Settings"));
    m_choice->addItems({tr("Disable Proxy"), tr("Custom Proxy Settings")});
    m_choice->setAccessibleName(tr("Proxy"));
    m_explanation->setTextFormat(Qt::PlainText);
    m_explanation->setWordWrap(true);
    m_explanation->setMinimumHeight(3 * m_explanation->fontMetrics().lineSpacing());
    m_explanation->setAlignment(Qt::AlignTop | Qt::AlignLeft);

    auto* form = new QFormLayout(this);
    form->setContentsMargins(16, 16, 16, 16);
    form->setSpacing(12);
    form->addRow(m_choice);
    form->addRow(m_explanation);
    AddFields(*form);
    form->addRow(m_notice);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    m_ok = buttons->button(QDialogButtonBox::Ok);
    form->addRow(buttons);
    setMinimumWidth(480);

    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_choice, &QComboBox::currentIndexChanged, this, &CProxyPage::OnChoice);
    m_choice->setEnabled(false);
    OnChoice(m_choice->currentIndex());
    Read();
}

void CProxyPage::AddFields(QFormLayout& form) {
    const QStringList labels{tr("Proxy Address:"), tr("Proxy Port:"), tr("User Name:"), tr("Password:"),
                             tr("Bypass List (Separated By ;):")};
    for (int index = 0; index < FieldCount; ++index) {
        auto* field = new QLineEdit;
        field->setMaxLength(std::numeric_limits<int>::max());
        connect(field, &QLineEdit::textEdited, this, &CProxyPage::ShowRemark);
        form.addRow(labels[index], field);
        m_fields.at(static_cast<std::size_t>(index)) = field;
    }
    m_fields[Password]->setEchoMode(QLineEdit::Password);
}

void CProxyPage::Read() {
    m_loader.Load(
        Lane::Service,
        [service = m_service, names = QStringList{SavedTypeSetting} + FieldSettings](std::stop_token stop) {
            return ReadSettings(service, names, stop);
        },
        [this](const Loaded<SettingReads>& loaded) {
            if (loaded.outcome != LoadOutcome::Cancelled)
                Apply(loaded);
        });
}

void CProxyPage::Apply(const Loaded<SettingReads>& loaded) {
    if (!loaded || !loaded->reached) {
        m_notice->SetText(
            tr("The service does not answer, so its proxy settings are not known. They are read again "
               "by themselves when it is back."));
        m_loader.StartTimer(RetryPeriod, [this] { Read(); });
        return;
    }
    m_loader.StopTimer();
    for (std::size_t index = 0; index < FieldCount; ++index)
        ShowField(index, loaded->settings.at(index + 1));
    m_choice->setEnabled(true);
    const SettingRead& type = loaded->settings.front();
    if (type.state == SettingState::NotRead)
        m_choice->setCurrentIndex(NothingChosen); // nobody knows what it was: it has to be chosen
    else
        m_choice->setCurrentIndex(LeadingNumber(type.body) != 0 ? CustomProxy : DisableProxy);
    OnChoice(m_choice->currentIndex());
    m_choice->setFocus();
}

/// A field whose setting was not read says so in grey, and is written only when somebody fills it.
void CProxyPage::ShowField(std::size_t index, const SettingRead& read) {
    m_fields.at(index)->setText(SettingText(read.body));
    if (read.state != SettingState::NotRead)
        return;
    m_fields.at(index)->setPlaceholderText(tr("not read"));
    m_unread.append(FieldSettings[static_cast<qsizetype>(index)]);
}

QStringList CProxyPage::Unknown() const {
    QStringList names;
    for (std::size_t index = 0; index < FieldCount; ++index) {
        const QString& name = FieldSettings[static_cast<qsizetype>(index)];
        if (m_unread.contains(name) && m_fields.at(index)->text().isEmpty())
            names.append(name);
    }
    return names;
}

void CProxyPage::OnChoice(int index) {
    for (QLineEdit* field : m_fields)
        field->setEnabled(index == CustomProxy);
    m_ok->setEnabled(m_choice->isEnabled() && index != NothingChosen);
    if (index == DisableProxy) {
        m_type = ProxyEnv::Disabled;
        m_explanation->setText(
            tr("Proxy support is disabled. ") + ZEPMuiGetBrandingStringW(Branding::ProductLine) +
            tr(" will connect to Cloud Storage directly. This is a common case for home users."));
    } else if (index == CustomProxy) {
        m_type = ProxyEnv::Custom;
        m_explanation->setText(
            tr("Proxy support is enabled. Please configure the proxy settings below. Leave the "
               "field blank if not applicable. "));
    } else {
        m_explanation->setText(tr("Warning: No Proxy Type Is Selected!"));
    }
    ShowRemark();
}

void CProxyPage::ShowRemark() {
    QStringList texts;
    for (const QLineEdit* field : m_fields)
        texts.append(field->text());
    m_notice->SetText(m_type == ProxyEnv::Custom ? QueryRemark(texts.join(u' ')) : QString());
}

ProxyEnv CProxyPage::Wanted() const {
    return {m_type,
            m_fields[Address]->text(),
            m_fields[Port]->text(),
            m_fields[User]->text(),
            m_fields[Password]->text(),
            m_fields[Bypass]->text()};
}

void WriteProxy(const ServiceClient& service, const ProxyEnv& proxy, const QStringList& left,
                std::stop_token stop) {
    if (!IsReached(service.SetIntSetting(TypeSetting, proxy.type, stop)))
        return;
    if (proxy.type == ProxyEnv::Custom) {
        const QStringList values{proxy.address, proxy.port, proxy.user, proxy.password, proxy.bypass};
        for (int index = 0; index < values.size(); ++index) {
            if (!left.contains(FieldSettings[index]) &&
                !IsReached(service.SetStringSetting(FieldSettings[index], values[index], stop)))
                return;
        }
    }
    service.SetIntSetting(SavedTypeSetting, proxy.type, stop);
}
