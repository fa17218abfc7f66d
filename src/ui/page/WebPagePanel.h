#pragma once

#include "page/BrenPanel.h"

class QTextBrowser;

/// A local page that comes with the program, in a text browser.
class WebPagePanel : public CBrenPanel {
    Q_OBJECT

public:
    /// `fileName` is looked for beside the executable.
    WebPagePanel(const Console& console, QString fileName);

    void Activate() override;

protected:
    void CreatePanel() override;
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_fileName;
    QTextBrowser* m_browser = nullptr;
};
