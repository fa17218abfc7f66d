#pragma once

#include "page/TabPanel.h"

class UserPrompts;

/// Shows every kind of card, tab, paging state, control, prompt and icon, for those who work on them. Behind
/// a development switch.
class CGalleryPanel : public CTabPanel {
    Q_OBJECT

public:
    CGalleryPanel(MainFrame& frame, UserPrompts& prompts, QWidget* parent = nullptr);

    void Activate() override;

protected:
    void CreatePanel() override;

private:
    CBrenPanel* MakeControls();
    CBrenPanel* MakeScrolled(QWidget* content);

    UserPrompts& m_prompts;
};
