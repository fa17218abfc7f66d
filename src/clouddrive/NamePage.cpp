#include "clouddrive/NamePage.h"

#include "look/Look.h"
#include "page/Console.h"
#include "page/UserPrompts.h"
#include "service/VirtualDirectories.h"
#include "wizard/Form.h"
#include "zep/Text.h"

#include <QComboBox>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPushButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

/// The description file that is dragged; empty when it is something else.
QString FileOf(const QMimeData& data) {
    const QList<QUrl> urls = data.urls();
    const QString file = urls.size() == 1 ? urls.first().toLocalFile() : QString();
    return IsProviderFileName(file.section(u'/', -1)) ? file : QString();
}

} // namespace

struct NamePage::Facts {
    std::optional<std::vector<StorageProvider>> listed;
    ProviderFile file;
};

NamePage::NamePage(const Console& console, std::shared_ptr<MountDraft> draft)
    : WizardPage(tr("Provider and Name"),
                 tr("Choose the storage provider of the account, and the name under which the account is "
                    "shown.")),
      m_console(console), m_draft(std::move(draft)), m_form(new Form), m_provider(new QComboBox),
      m_name(new QLineEdit) {
    m_provider->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_provider->setMinimumContentsLength(20);
    m_provider->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    m_provider->setPlaceholderText(tr("Choose a provider"));
    m_form->Add(tr("&Storage provider"), m_provider, Form::Need::Required);
    m_form->Add(tr("Virtual &directory name"), m_name, Form::Need::Required,
                tr("Letters, digits, blanks and '.', '-', '_', '(', ')', '#'"));
    m_form->AddWide(MakeFileRow());
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_form);
    column->addStretch();
    setAcceptDrops(true);
    connect(m_form, &Form::Edited, this, &WizardPage::Edited);
}

QWidget* NamePage::MakeFileRow() {
    auto* button = new QPushButton(tr("&Open Provider File..."));
    connect(button, &QPushButton::clicked, this, &NamePage::PickFile);
    auto* words = new QLabel(
        tr("A provider that is not listed can come as a file (.brenviasp), which may also be dropped here."));
    words->setWordWrap(true);
    words->setFont(Look::Font(Look::Small));
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, Look::TextInset, 0, 0);
    layout->setSpacing(Look::TextInset);
    layout->addWidget(words, 1);
    layout->addWidget(button);
    return row;
}

void NamePage::Fill() {
    Sheet().Read(
        *this, Lane::Service, tr("Reading the storage providers..."),
        [service = m_console.service, file = m_file](const std::stop_token& stop) {
            Facts facts;
            if (const ServiceAnswer answer = RequestProviders(service, stop))
                facts.listed = ParseProviders(answer.body);
            if (!file.isEmpty())
                facts.file = ReadProviderFile(ToPath(file));
            return facts;
        },
        [this](const Loaded<Facts>& facts) { return Show(facts); });
}

QString NamePage::Show(const Loaded<Facts>& facts) {
    if (!facts)
        return facts.why;
    std::vector<Offer> offers;
    for (const StorageProvider& provider : facts->listed.value_or(std::vector<StorageProvider>()))
        offers.push_back({provider, false});
    if (facts->file.provider)
        offers.push_back({*facts->file.provider, true});
    if (!facts->file.failure.isEmpty()) {
        m_console.prompts.ShowMessage(this, tr("The provider file \"%1\" cannot be used.").arg(m_file), {},
                                      facts->file.failure);
        m_file.clear();
    }
    ShowOffers(std::move(offers), facts->file.provider.has_value());
    if (facts->listed || facts->file.provider)
        return {};
    return tr("The list of storage providers could not be read. Please check that the service is running.");
}

void NamePage::ShowOffers(std::vector<Offer> offers, bool chooseLast) {
    const auto before = Chosen() ? std::optional(Chosen()->provider) : std::nullopt;
    m_offers = std::move(offers);
    m_provider->clear();
    for (const Offer& offer : m_offers)
        m_provider->addItem(offer.provider.displayName.simplified());
    const auto same = std::find_if(m_offers.begin(), m_offers.end(), [&before](const Offer& offer) {
        return before && offer.provider.displayName == before->displayName &&
               offer.provider.spId == before->spId;
    });
    const int count = m_provider->count();
    m_provider->setCurrentIndex(chooseLast               ? count - 1
                                : same == m_offers.end() ? -1
                                                         : int(same - m_offers.begin()));
}

const NamePage::Offer* NamePage::Chosen() const {
    const int index = m_provider->currentIndex();
    return index < 0 ? nullptr : &m_offers.at(static_cast<std::size_t>(index));
}

void NamePage::Leave() {
    if (!Chosen())
        return Sheet().Stay({tr("Need To Select One Service Provider To Continue!"), m_provider, true});
    const QString name = m_name->text();
    if (const QString refusal = VDirNameRefusal(name, {}); !refusal.isEmpty())
        return Sheet().Stay({refusal, m_name, true});
    Sheet().Check(
        Lane::Service, tr("Checking the name..."),
        [service = m_console.service](const std::stop_token& stop) { return service.GetVdirList(stop); },
        [this, name](const Loaded<std::vector<VDirRecord>>& list) {
            if (!list)
                return Sheet().Stay({NoVdirListText(), m_name, true});
            if (const QString refusal = VDirNameRefusal(name, *list); !refusal.isEmpty())
                return Sheet().Stay({refusal, m_name, true});
            if (m_draft->choice == 0 || m_draft->chosen != Chosen()->provider)
                ++m_draft->choice;
            m_draft->chosen = Chosen()->provider;
            m_draft->fromFile = Chosen()->fromFile;
            m_draft->name = name;
            Sheet().Pass();
        });
}

PageLine NamePage::Line() const {
    if (!Chosen())
        return {};
    return {tr("Chosen:"), m_provider->currentText()};
}

void NamePage::PickFile() {
    const PickRequest request{PickKind::FileToOpen,
                              tr("Open Provider File"),
                              {},
                              tr("Provider descriptions (*.brenviasp*);;All files (*)"),
                              {}};
    m_console.prompts.PickPath(this, request, [this](const std::optional<QString>& file) {
        if (file)
            TakeFile(*file);
    });
}

void NamePage::TakeFile(const QString& file) {
    emit Edited(); // ends a check under way
    m_file = file;
    Fill();
}

void NamePage::showEvent(QShowEvent* event) {
    WizardPage::showEvent(event);
    const auto lookAt = std::exchange(m_draft->lookAt, MountOutcome::Place::Nothing);
    if (lookAt == MountOutcome::Place::Name)
        m_name->setFocus();
    else if (lookAt == MountOutcome::Place::Provider)
        m_provider->setFocus();
}

void NamePage::dragEnterEvent(QDragEnterEvent* event) {
    if (!FileOf(*event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void NamePage::dropEvent(QDropEvent* event) {
    event->acceptProposedAction();
    TakeFile(FileOf(*event->mimeData()));
}
