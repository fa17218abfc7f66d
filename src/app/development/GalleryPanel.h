#pragma once

#include "page/TabPanel.h"

/// Shows every kind of card, tab, paging state, control, prompt and icon, for those who work on them. Behind
/// a development switch.
class CGalleryPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit CGalleryPanel(const Console& console, QWidget* parent = nullptr);

    void Activate() override;

protected:
    void CreatePanel() override;

private:
    CBrenPanel* MakeControls();
    CBrenPanel* MakeScrolled(QWidget* content);
};
