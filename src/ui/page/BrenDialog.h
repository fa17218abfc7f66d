#pragma once

#include "lanes/PageLoader.h"

#include <QDialog>
#include <QStringList>

class NoticeLine;
class QGridLayout;
class QLabel;
class QPushButton;
class ServiceClient;
class SettingNews;

/// Base of a dialog over what the service keeps. Its fields take nothing until that was read, which is tried
/// again and again while the service does not answer. OK writes; when that fails, a line says so and the
/// dialog stays with what was typed. It grows with its texts.
class CBrenDialog : public QDialog {
    Q_OBJECT

public:
    static constexpr std::chrono::milliseconds RetryPeriod{1000};

    /// Shows the dialog over its parent's window; it deletes itself when it is closed.
    void Open(SettingNews& news);

    /// Closes only when all is written, so after the service has answered.
    void accept() override;
    /// While it writes, only when it is wished twice.
    void reject() override;

signals:
    void Written(const QString& setting);

protected:
    /// What OK does. `run` works on the lane of WriteLane, captures values only, and returns why it failed.
    struct Write {
        std::function<QString(const ServiceClient&, std::stop_token)>
            run;              ///< none when there is nothing to do
        QStringList settings; ///< what it may have written
    };

    CBrenDialog(const ServiceClient& service, Reader& reader, const QString& title, QWidget* parent);

    /// A field with a label, whose "&" names the key that leads to it.
    void AddRow(const QString& label, QWidget* field);
    /// A field across the dialog.
    void AddRow(QWidget* field);
    /// A word-wrapped plain text across the dialog.
    QLabel* AddNote(const QString& text);

    /// Reads when the dialog is shown. `fetch` is `std::optional<Value> (const ServiceClient&,
    /// std::stop_token)` on the service's lane, `apply` puts the value into the fields.
    template <typename Fetch, typename Apply>
    void ReadWhenShown(Fetch fetch, Apply apply) {
        m_read = [this, fetch = std::move(fetch), apply = std::move(apply)] {
            m_loader.Load(
                Lane::Service,
                [service = &m_service, fetch](std::stop_token stop) { return fetch(*service, stop); },
                [this, apply](const auto& loaded) {
                    if (loaded)
                        apply(*loaded);
                    if (loaded.outcome != LoadOutcome::Cancelled)
                        EndRead(loaded.outcome == LoadOutcome::Answered);
                });
        };
    }

    /// Why OK does nothing with what the fields hold now; empty when it does.
    virtual QString Refusal() const { return {}; }
    virtual Write Changes() const = 0;
    /// Where `run` works: on the network's lane when it may wait for other machines.
    virtual Lane WriteLane() const { return Lane::Service; }

    /// A remark on what is typed, until something graver is to be said.
    void ShowRemark(const QString& text);

    void showEvent(QShowEvent* event) override;
    bool event(QEvent* event) override;

private:
    void EndRead(bool answered);
    void EndWrite(const QString& failure);
    void TellWritten();
    void SetReady(bool ready);
    void FocusFirstField();
    QWidget* FirstField() const;
    void Grow();

    const ServiceClient& m_service;
    QWidget* m_fields;
    QGridLayout* m_grid; ///< of the fields; a form layout takes too little room for wrapped texts
    NoticeLine* m_notice;
    QPushButton* m_ok = nullptr;
    QPointer<QWidget> m_focusBefore; ///< had the keyboard before the fields were disabled
    QStringList m_writing;           ///< the settings that OK has sent and nobody was told of
    bool m_isWriting = false;
    bool m_mayLeave = false; ///< without waiting for what is being written
    std::function<void()> m_read;
    PageLoader m_loader;
};
