#include "clouddrive/VDirCommands.h"

#include "clouddrive/BVDirMgrDlg.h"
#include "clouddrive/LoginWatch.h"
#include "clouddrive/RenameVDirDlg.h"
#include "look/Formatters.h"
#include "page/CommandRunner.h"
#include "page/Console.h"
#include "page/UserPrompts.h"
#include "platform/DriveFolder.h"
#include "platform/Shell.h"
#include "service/RequestText.h"
#include "zep/SysInfo.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString LoginKey(const QString& name) {
    return u"login "_s + name.toCaseFolded();
}

QString DismountKey(const QString& name) {
    return u"dismount "_s + name.toCaseFolded();
}

} // namespace

VDirCommands::VDirCommands(const Console& console, CommandRunner& runner, QWidget& page, LoginPace pace)
    : QObject(&page), m_console(console), m_runner(runner), m_page(page), m_pace(pace),
      m_providers(console, page), m_loader(console.reader, page) {
    connect(&runner, &CommandRunner::BusyChanged, this, &VDirCommands::BusyChanged);
}

void VDirCommands::Open(const VDirRecord& record, char16_t drive) {
    const bool isName =
        !record.name.contains(u'/') && !record.name.contains(u'\\') && LostInPath(record.name).isEmpty();
    const std::string folder =
        platform::DriveFolder(drive, ZEPGetHomePath(u"drive"_s), record.name.toStdString());
    if (!isName || !platform::OpenInShell(folder))
        m_console.prompts.ShowMessage(&m_page,
                                      tr("\"%1\" cannot be opened as a folder.").arg(Isolated(record.name)));
}

bool VDirCommands::IsLoggingIn(const QString& name) const {
    return m_runner.IsBusy(LoginKey(name)) || m_logins.contains(name.toCaseFolded());
}

bool VDirCommands::IsDismounting(const QString& name) const {
    return m_runner.IsBusy(DismountKey(name)) || m_preparing.contains(name.toCaseFolded());
}

QString VDirCommands::LoginText(const QString& name) const {
    const auto login = m_logins.constFind(name.toCaseFolded());
    return login != m_logins.constEnd() ? tr("Logging in, %1 s").arg(login->watch->Seconds())
                                        : m_loginFailures.value(name.toCaseFolded());
}

void VDirCommands::EndCommand(bool done, const QString& failure) {
    if (!done)
        m_console.prompts.ShowMessage(&m_page, failure);
    emit Changed();
}

void VDirCommands::Login(const VDirRecord& record) {
    if (IsLoggingIn(record.name))
        return;
    if (const QString refusal = ReloginRefusal(record.name); !refusal.isEmpty())
        return m_console.prompts.ShowMessage(&m_page, refusal);
    CommandOrder order;
    order.send = [name = record.name](const ServiceClient& service, std::stop_token stop) {
        return ForceRelogin(service, name, std::move(stop));
    };
    order.failure = tr("Not logged in: the service did not take the command (%1)").arg(Isolated(record.name));
    order.after = [this, record](bool done) {
        if (done)
            WatchLogin(record);
        else
            EndCommand(false, tr("Operation Failed\n"));
    };
    m_runner.Run(LoginKey(record.name), order);
}

void VDirCommands::WatchLogin(const VDirRecord& record) {
    const QString key = record.name.toCaseFolded();
    ForgetLogin(record.name);
    auto* watch = new LoginWatch(m_console, m_page, record, m_pace);
    watch->setParent(this);
    connect(watch, &LoginWatch::Ticked, this, [this, record] { emit LoginChanged(record.name); });
    connect(watch, &LoginWatch::Ended, this, [this, record, key](const LoginOutcome& outcome) {
        EndLogin(record, outcome, !m_logins.value(key).box);
    });
    m_logins[key].watch = watch;
    const auto cancel = [watch = QPointer(watch)] {
        if (watch)
            watch->Cancel();
    };
    const auto leave = [commands = QPointer(this), key] {
        if (commands && commands->m_logins.contains(key))
            commands->m_logins[key].box.reset();
    };
    m_logins[key].box = m_console.prompts.ShowOperation(
        &m_page, {.title = record.name, .text = tr("Logging In..."), .cancel = cancel, .leave = leave});
    emit LoginChanged(record.name);
}

/// Nobody who has gone on is stopped by a box; the card tells it. A wait that was given up says nothing.
void VDirCommands::EndLogin(const VDirRecord& record, const LoginOutcome& outcome, bool inBackground) {
    const QString key = record.name.toCaseFolded();
    const LoginUnderWay login = m_logins.take(key);
    login.watch->deleteLater();
    const bool failed = outcome.end == LoginEnd::Failed || outcome.end == LoginEnd::NoPlugin ||
                        outcome.end == LoginEnd::Silent;
    if (failed)
        m_loginFailures[key] = outcome.words;
    if (failed && !inBackground)
        m_console.prompts.ShowMessage(&m_page, outcome.words);
    emit LoginChanged(record.name);
    emit Changed();
}

void VDirCommands::Dismount(const VDirRecord& record, std::function<bool()> isListed) {
    const QString key = record.name.toCaseFolded();
    if (IsDismounting(record.name))
        return;
    m_preparing.insert(key);
    emit BusyChanged();
    m_loader.Command(
        Lane::Service,
        [service = m_console.service, name = record.name](std::stop_token stop) {
            return ReadVDirUses(service, name, std::move(stop));
        },
        [this, record, key, isListed = std::move(isListed)](const Loaded<VDirUses>& uses) {
            m_preparing.remove(key);
            emit BusyChanged();
            AskToDismount(record, uses ? *uses : VDirUses{{}, false}, isListed);
        });
}

void VDirCommands::AskToDismount(const VDirRecord& record, const VDirUses& uses,
                                 std::function<bool()> isListed) {
    QStringList named{tr("\"%1\" will no longer be attached to this computer.").arg(Isolated(record.name))};
    named += uses.sentences;
    if (!uses.known)
        named += tr("Not all sync, encrypted and compressed folders that use it could be read.");
    QStringList lines{tr("Do you really want to dismount the virtual directory?"), named.join(u' ')};
    lines += DocumentQuestion(tr("The name"), record.name);
    lines.removeAll(QString());

    CommandOrder order;
    order.send = [name = record.name](const ServiceClient& service, std::stop_token stop) {
        return DismountVDir(service, name, std::move(stop));
    };
    order.question = lines.join(u'\n');
    order.title = record.name;
    order.isStillMeant = std::move(isListed);
    order.gone = tr("The virtual directory is no longer there.");
    order.failure =
        tr("Not dismounted: the service did not take the command (%1)").arg(Isolated(record.name));
    order.after = [this, name = record.name](bool done) {
        if (done)
            emit Dismounted(name);
        EndCommand(done, tr("Operation Failed\n"));
    };
    m_runner.Run(DismountKey(record.name), order);
}

void VDirCommands::Rename(const VDirRecord& record) {
    auto* dialog = new CRenameVDirDlg(m_console.service, m_console.reader, record.name, m_page.window());
    connect(dialog, &QDialog::accepted, this, [this, dialog, name = record.name] {
        if (dialog->Name() != name) {
            emit Renamed(name, dialog->Name());
            emit Changed();
        }
    });
    dialog->Open(m_console.settingNews);
}

void VDirCommands::Config(const VDirRecord& record) {
    auto* dialog = new CBVDirMgrDlg(m_console.service, m_console.reader, record, m_providers.Of(record.spId),
                                    m_page.window());
    connect(dialog, &QDialog::finished, this, [this, name = record.name] { emit Configured(name); });
    dialog->Open(m_console.settingNews);
}
