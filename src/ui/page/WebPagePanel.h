#pragma once

#include "page/BrenPanel.h"

/// A page that shows a local page that comes with the program.
class WebPagePanel : public CBrenPanel {
    Q_OBJECT

public:
    /// `fileName` is looked for beside the executable.
    WebPagePanel(const Console& console, QString fileName);

protected:
    void CreatePanel() override;

private:
    QString m_fileName;
};
