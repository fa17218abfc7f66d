#include "page/OperationDialog.h"

#include "lanes/ProgressNote.h"
#include "look/Formatters.h"
#include "look/Look.h"
#include "page/WorkBar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include <chrono>

using namespace std::chrono_literals;

namespace {

constexpr auto ReadPeriod = 100ms;

QLabel* MakeText(const QString& text, const QColor& colour) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    Look::SetInk(*label, colour);
    return label;
}

} // namespace

OperationDialog::OperationDialog(OperationRequest request, QWidget* parent)
    : QDialog(parent), m_request(std::move(request)), m_state(MakeText({}, Look::Secondary)),
      m_elapsed(MakeText({}, Look::Muted)), m_bar(new WorkBar), m_cancel(new QPushButton(tr("Cancel"))) {
    setMinimumWidth(420);
    m_bar->setAccessibleName(m_request.text);
    m_cancel->setEnabled(bool(m_request.cancel));
    m_elapsed->setWordWrap(false);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_elapsed);
    buttons->addStretch();
    if (m_request.leave) {
        auto* leave = new QPushButton(tr("Go On in the &Background"));
        buttons->addWidget(leave);
        connect(leave, &QPushButton::clicked, this, &OperationDialog::Leave);
    }
    buttons->addWidget(m_cancel);

    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(16, 16, 16, 16);
    column->setSpacing(8);
    column->addWidget(MakeText(m_request.text, Look::Ink));
    column->addWidget(m_bar);
    column->addWidget(m_state);
    column->addStretch();
    column->addLayout(buttons);
    m_cancel->setFocus();

    connect(m_cancel, &QPushButton::clicked, this, &OperationDialog::reject);
    connect(&m_timer, &QTimer::timeout, this, &OperationDialog::ShowProgress);
    m_since.start();
    m_timer.start(ReadPeriod);
    ShowProgress();
}

void OperationDialog::ShowProgress() {
    const Progress progress = m_request.progress ? m_request.progress->Read() : Progress();
    m_bar->SetProgress(progress);
    m_state->setText(progress.text);
    m_elapsed->setText(tr("%1 elapsed").arg(FormatDuration(quint32(m_since.elapsed() / 1000))));
}

void OperationDialog::reject() {
    const auto cancel = std::exchange(m_request.cancel, nullptr);
    if (!cancel)
        return;
    m_cancel->setText(tr("Cancelling..."));
    m_cancel->setEnabled(false);
    cancel();
}

void OperationDialog::Leave() {
    const auto leave = m_request.leave;
    End();
    leave();
}

void OperationDialog::End() {
    done(Accepted);
}
