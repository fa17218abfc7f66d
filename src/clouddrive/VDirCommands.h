#pragma once

#include "clouddrive/ProviderNames.h"
#include "service/VDirLogin.h"
#include "service/VirtualDirectories.h"

#include <QHash>

class CommandRunner;
class LoginWatch;
struct Console;

/// All that a person does to virtual directories, from their cards and summaries alike. A directory is known
/// by its name, ignoring case.
class VDirCommands : public QObject {
    Q_OBJECT

public:
    /// `page` is the list that owns it, `runner` that of the page.
    VDirCommands(const Console& console, CommandRunner& runner, QWidget& page, LoginPace pace);

    /// Opens the folder in which the drive shows the directory.
    void Open(const VDirRecord& record, char16_t drive);
    void Login(const VDirRecord& record);
    /// Asks before; `isListed` tells whether it is still there after the answer.
    void Dismount(const VDirRecord& record, std::function<bool()> isListed);
    void Rename(const VDirRecord& record);
    void Config(const VDirRecord& record);

    /// What is to be said of the directory's login: that it is under way, why the last one failed, or
    /// nothing.
    QString LoginText(const QString& name) const;
    /// What was said of a login that failed is of no use any more.
    void ForgetLogin(const QString& name) { m_loginFailures.remove(name.toCaseFolded()); }
    bool IsLoggingIn(const QString& name) const;
    bool IsDismounting(const QString& name) const;

    ProviderNames& Providers() { return m_providers; }

signals:
    void Dismounted(const QString& name);
    void Renamed(const QString& name, const QString& newName);
    void Configured(const QString& name);
    void LoginChanged(const QString& name);
    /// What the service keeps of its directories is another now.
    void Changed();
    void BusyChanged();

private:
    void AskToDismount(const VDirRecord& record, const VDirUses& uses, std::function<bool()> isListed);
    void WatchLogin(const VDirRecord& record);
    void EndLogin(const VDirRecord& record, const LoginOutcome& outcome, bool inBackground);
    void EndCommand(bool done, const QString& failure);

    struct LoginUnderWay {
        LoginWatch* watch = nullptr;
        std::shared_ptr<void> box; ///< while it stands
    };

    const Console& m_console;
    CommandRunner& m_runner;
    QWidget& m_page;
    LoginPace m_pace;
    ProviderNames m_providers;
    QHash<QString, LoginUnderWay> m_logins;
    QHash<QString, QString> m_loginFailures;
    QSet<QString> m_preparing; ///< directories whose users are being read before the question
    PageLoader m_loader;
};
