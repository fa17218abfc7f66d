#pragma once

#include "page/BrenPanel.h"

/// A local page that comes with the program, in a text browser.
class CWebPagePanel : public CBrenPanel {
    Q_OBJECT

public:
    /// `fileName` is looked for beside the executable.
    CWebPagePanel(const Console& console, QString fileName);

    void Activate() override;

protected:
    void CreatePanel() override;

private:
    QString m_fileName;
};
