#include "backup/WritersPage.h"

#include "lanes/ProgressNote.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/Console.h"
#include "page/LinkLabel.h"
#include "wizard/BrenPropertySheet.h"
#include "wizard/CheckTreeView.h"
#include "wizard/TreeFindField.h"

#include <QKeyEvent>
#include <QSet>
#include <QVBoxLayout>

#include <map>

using namespace std::chrono_literals;
using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype MostNamed = 3; ///< in the line below

/// Each component once; one without a name is none.
TreeLevel LevelOf(const QString& key, const QStringList& components) {
    TreeLevel level;
    QSet<QString> seen{QString()};
    for (const QString& component : components) {
        if (seen.contains(component))
            continue;
        seen.insert(component);
        level.entries.push_back({ComponentKey(key, component), component, SettingIcon, false});
    }
    return level;
}

QStringList KeysOf(const std::vector<WalkedNode>& nodes) {
    QStringList keys;
    for (const WalkedNode& node : nodes)
        keys.append(node.path.last());
    return keys;
}

QStringList NamesOf(const std::vector<WalkedNode>& nodes) {
    QStringList names;
    for (const WalkedNode& node : nodes)
        names.append(node.node ? node.node->entry.name : node.path.last());
    return names;
}

} // namespace

CWritersPage::CWritersPage(const Console& console, std::shared_ptr<ApplicationChoice> choice)
    : WizardPage(tr("Applications"), tr("Choose the applications, or the parts of them, to back up.")),
      m_console(console), m_choice(std::move(choice)),
      // All levels are given, so it has nothing to list by itself.
      m_tree(console.reader, *this, Lane::Computing,
             [](const QStringList&, const std::stop_token&) { return TreeLevel(); }),
      m_view(new CheckTreeView(m_tree)) {
    m_view->setAccessibleName(tr("Applications"));
    m_view->installEventFilter(this);
    auto* again = new LinkLabel(tr("<a>Build the list again</a>"));
    again->setFont(Look::Font(Look::Small));
    connect(again, &LinkLabel::LinkClicked, this, &CWritersPage::Fill);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(new TreeFindField(*m_view, tr("Find an application")));
    column->addWidget(m_view, 1);
    column->addWidget(again);
    connect(&m_tree, &CheckTreeModel::ChoiceEdited, this, &WizardPage::Edited);
    connect(&m_clock, &QTimer::timeout, this, &CWritersPage::TellTime);
}

void CWritersPage::Fill() {
    m_note = std::make_shared<ProgressNote>();
    m_time.start();
    m_clock.start(1s);
    TellTime();
    Sheet().Read(
        *this, Lane::Apart, tr("Building Application List..."),
        [service = m_console.service](std::stop_token stop) { return ReadWriters(service, std::move(stop)); },
        [this](const Loaded<WriterReading>& reading) { return Show(reading); }, m_note);
}

void CWritersPage::TellTime() {
    m_note->Tell({0, 0, tr("%1 s so far. This may take two minutes.").arg(m_time.elapsed() / 1000)});
}

QString CWritersPage::Show(const Loaded<WriterReading>& reading) {
    m_clock.stop();
    QString failure = reading ? reading->failure : reading.why;
    if (failure.isEmpty())
        ShowWriters(reading->writers);
    else if (m_tree.rowCount() == 0)
        m_tree.SetLevel({}, {}); // nothing is on its way any more
    return failure;
}

/// Writers that have the same key stand for one.
void CWritersPage::ShowWriters(const std::vector<Writer>& writers) {
    TreeLevel level;
    std::map<QString, QStringList> components;
    for (const Writer& writer : writers) {
        const QString key = WriterKey(writer);
        const QString shown = WriterDisplayName(writer.name);
        const auto [place, isNew] = components.try_emplace(key);
        if (isNew)
            level.entries.push_back(
                {key, shown, SettingGroupIcon, true, true, shown == writer.name ? QString() : writer.name});
        place->second += writer.components;
    }
    std::vector<std::pair<QString, TreeLevel>> below;
    for (TreeEntry& entry : level.entries) {
        below.emplace_back(entry.key, LevelOf(entry.key, components[entry.key]));
        entry.canOpen = !below.back().second.entries.empty();
    }
    m_tree.SetLevel({}, std::move(level));
    for (auto& [key, parts] : below)
        if (!parts.entries.empty())
            m_tree.SetLevel({key}, std::move(parts));
    ForgetUnlisted();
}

/// What was ticked or left out in an earlier list and is in none now: nobody could see or change it.
void CWritersPage::ForgetUnlisted() {
    for (const WalkedNode& node : m_tree.Walk().selected)
        if (!node.node)
            m_tree.SetTicked(node.path, false);
    for (const WalkedNode& node : m_tree.Walk().excluded)
        if (!node.node)
            m_tree.SetTicked(node.path, true);
}

void CWritersPage::Leave() {
    const TreeWalk walk = m_tree.Walk();
    if (walk.selected.empty())
        return Sheet().Stay({tr("Please select at least one folder to backup!"), m_view, true});
    m_choice->draft.keys = KeysOf(walk.selected);
    m_choice->draft.exclusions = KeysOf(walk.excluded);
    m_choice->names = NamesOf(walk.selected);
    Sheet().Pass();
}

PageLine CWritersPage::Line() const {
    const QStringList names = NamesOf(m_tree.Walk().selected);
    if (names.isEmpty())
        return {};
    return {tr("Chosen:"), names.size() > MostNamed ? tr("%1 applications and components").arg(names.size())
                                                    : names.join(u", "_s)};
}

bool CWritersPage::eventFilter(QObject* watched, QEvent* event) {
    const bool anew = watched == m_view && event->type() == QEvent::KeyPress &&
                      static_cast<QKeyEvent*>(event)->key() == Qt::Key_F5;
    if (anew)
        Fill();
    return anew || WizardPage::eventFilter(watched, event);
}
