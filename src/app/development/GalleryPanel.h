#pragma once

#include "page/TabPanel.h"

/// Shows every kind of card, tab, paging state, control, prompt and icon, for those who work on them. Behind
/// a development switch.
class GalleryPanel : public CTabPanel {
    Q_OBJECT

public:
    explicit GalleryPanel(const Console& console, QWidget* parent = nullptr);

    void Activate() override;

protected:
    void CreatePanel() override;

private:
    CBrenPanel* MakeControls();
    CBrenPanel* MakeScrolled(QWidget* content);
};
