#include "clouddrive/VDirSummary.h"

#include "clouddrive/VDirCommands.h"
#include "list/BrenListCtrl.h"
#include "list/CellMarkup.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/LinkLabel.h"
#include "page/UserPrompts.h"

#include <QLabel>
#include <QVBoxLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

QString ChunkText(const ChunkSettings& chunks) {
    if (!chunks.known)
        return CVDirSummary::tr(
            "Whether chunking is enabled could not be read, click <a>here</a> to configure.");
    return chunks.enabled ? CVDirSummary::tr(
                                "Chunking is enabled, Chunk Size is %1(MB), click <a>here</a> to configure.")
                                .arg(chunks.size)
                          : CVDirSummary::tr("Chunking is disabled, Click <a>here</a> to enable.");
}

} // namespace

CVDirSummary::CVDirSummary(const Console& console, VDirCommands& commands, const VDirRecord& record)
    : CBrenPanel(console), m_commands(commands), m_record(record) {
    SetHelp(tr("View summary of configuration for this virtual directory. Each virtual directory corresponds "
               "with a storage account."));
    const auto reload = [this](const QString& name) {
        if (IsActive() && name.compare(m_record.name, Qt::CaseInsensitive) == 0)
            Reload();
    };
    connect(&commands, &VDirCommands::Configured, this, reload);
    connect(&commands, &VDirCommands::BusyChanged, this, &CVDirSummary::ShowToolbar);
    connect(&commands, &VDirCommands::LoginChanged, this, &CVDirSummary::ShowToolbar);
}

void CVDirSummary::CreatePanel() {
    m_chunks = new LinkLabel;
    m_chunks->setWordWrap(true);
    connect(m_chunks, &LinkLabel::LinkClicked, this, [this] {
        m_commands.Config({m_record.name, m_record.safeCardId, {}, {}});
    });
    auto* title = new QLabel(tr("Virtual Directory Configuration"));
    title->setFont(Look::Font(Look::Body, QFont::Bold));
    m_card = new CBrenListCtrl(TheConsole().prompts);
    m_card->setAccessibleName(title->text());
    m_card->AddColumn(tr("Name"), 200);
    m_card->AddColumn(tr("Value"), 260);
    m_card->RememberWidths(u"VDirSummary"_s);
    m_card->SetLoading(tr("Loading..."));
    m_card->SetEmptyText(tr("The login card shows no fields."));
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Look::PageMargin, Look::PageMargin, Look::PageMargin, Look::PageMargin);
    layout->setSpacing(Look::CardGap);
    layout->addWidget(m_chunks);
    layout->addWidget(title);
    layout->addWidget(m_card, 1);
    setFocusProxy(m_card);
}

void CVDirSummary::SetRecord(const VDirRecord& record) {
    const bool sameAccount = record.name == m_record.name && record.safeCardId == m_record.safeCardId;
    m_record = record;
    if (!sameAccount && IsActive())
        Reload();
}

void CVDirSummary::Activate() {
    ShowToolbar();
    CBrenPanel::Activate();
}

void CVDirSummary::ShowToolbar() {
    const auto isShown = [panel = QPointer(this)] { return !panel.isNull(); };
    SetToolbar({{tr("Config"), SettingsIcon, [this] { m_commands.Config(m_record); }},
                {tr("Dismount"), DismountIcon, [this, isShown] { m_commands.Dismount(m_record, isShown); },
                 !m_commands.IsDismounting(m_record.name)},
                {tr("Rename"), EditIcon, [this] { m_commands.Rename(m_record); }},
                {tr("Login"), LoginIcon, [this] { m_commands.Login(m_record); },
                 !m_commands.IsLoggingIn(m_record.name)}});
}

CVDirSummary::Facts CVDirSummary::ReadFacts(const ServiceClient& service, const VDirRecord& record,
                                            const std::stop_token& stop) {
    const ServiceAnswer card = RequestLoginCard(service, record.safeCardId, stop);
    return {card ? ParseLoginCard(card.body) : std::nullopt, ReadChunkSettings(service, record.name, stop)};
}

void CVDirSummary::Reload() {
    Loader().Load(
        Lane::Service,
        [service = TheConsole().service, record = m_record](const std::stop_token& stop) {
            return ReadFacts(service, record, stop);
        },
        [this](const Loaded<Facts>& facts) {
            if (facts)
                Show(*facts);
        });
}

void CVDirSummary::Show(const Facts& facts) {
    const QString failure =
        tr("Unable to get configuration info. Please check the application is still running");
    std::vector<ListRow> rows;
    for (const CardField& field : facts.card.value_or(std::vector<CardField>()))
        rows.emplace_back(QString::number(rows.size()),
                          QStringList{Cell::Plain(field.name), Cell::Plain(field.value)});
    m_card->SetRows(std::move(rows));
    m_chunks->SetText(ChunkText(facts.chunks));
    TellFailure(facts.card ? QString() : failure);
    if (!facts.card && IsActive())
        TheConsole().prompts.ShowMessage(this, failure);
}
