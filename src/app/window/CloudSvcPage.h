#pragma once

#include "lanes/PageLoader.h"

#include <QDialog>

class QLabel;
class QPushButton;
class ServiceClient;

/// Shows whether this computer is published to the cloud space, and publishes or withdraws it.
class CloudSvcPage : public QDialog {
    Q_OBJECT

public:
    CloudSvcPage(const ServiceClient& service, Reader& reader, QWidget* parent = nullptr);

protected:
    void showEvent(QShowEvent* event) override;

private:
    enum class State { Asking, Published, NotPublished, Unknown };

    void Ask();
    void Change();
    void ShowState(State state);

    const ServiceClient& m_service;
    QLabel* m_text;
    QPushButton* m_change;
    State m_state = State::Asking;
    PageLoader m_loader;
};
