#pragma once

#include "lanes/PageLoader.h"
#include "settings/SettingValues.h"
#include "zep/ProxyEnv.h"

#include <QDialog>

#include <array>

class NoticeLine;
class QComboBox;
class QFormLayout;
class QLabel;
class QLineEdit;
class QPushButton;

/// Asks for the proxy that the service uses. Takes nothing before the stored values are read.
class CProxyPage : public QDialog {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds RetryPeriod{1000};

    CProxyPage(const ServiceClient& service, Reader& reader, QWidget* parent = nullptr);

    ProxyEnv Wanted() const;
    /// The names of the settings that were not read and whose fields nobody has filled: they stay as they
    /// are.
    QStringList Unknown() const;

private:
    static constexpr int FieldCount = 5;

    void AddFields(QFormLayout& form);
    void Read();
    void Apply(const Loaded<SettingReads>& loaded);
    void ShowField(std::size_t index, const SettingRead& read);
    void OnChoice(int index);
    void ShowRemark();

    const ServiceClient& m_service;
    QComboBox* m_choice;
    QLabel* m_explanation;
    std::array<QLineEdit*, FieldCount> m_fields{};
    NoticeLine* m_notice;
    QPushButton* m_ok = nullptr;
    int m_type = ProxyEnv::Disabled;
    QStringList m_unread; ///< names of the settings that were not read
    PageLoader m_loader;
};

/// Writes the proxy in the order that the service needs: the type first, address and credentials only of a
/// custom proxy and without those `left` as they are, last the type by which the service knows that all is
/// there. Ends early when the service does not answer, so that it never takes a part for the whole.
void WriteProxy(const ServiceClient& service, const ProxyEnv& proxy, const QStringList& left,
                std::stop_token stop);
