#pragma once

#include "lanes/PageLoader.h"
#include "plan/RestoreDraft.h"
#include "plan/RestoreEnd.h"

#include <QFrame>

class LinkLabel;
struct Console;

/// A line that tells how a restore goes that was begun, and how it has ended. Not there before there is one.
class RestoreEndLine : public QFrame {
    Q_OBJECT

public:
    explicit RestoreEndLine(const Console& console);

    /// Of the backup, to know where files are restored to.
    void SetSources(const QStringList& sources) { m_sources = sources; }
    void Await(const RestoreDraft& restore);

protected:
    void showEvent(QShowEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void Ask();
    void Show(const RestoreEnd& end);
    QString Folder() const;
    void OpenFolder();
    void OnLink(int span);

    const Console& m_console;
    QStringList m_sources;
    std::optional<RestoreDraft> m_restore; ///< the one that is told of
    RestoreEnd m_end;
    LinkLabel* m_text;
    PageLoader m_loader;
};
