#pragma once

#include "development/ViewWalk.h"
#include "page/WindowPrompts.h"
#include "window/PageEntry.h"

#include <vector>

class CBTaskMMCDlg;

/// The sections of a mode, in the order of the navigation. The only place that knows every page.
std::vector<PageEntry> PagesOf(bool serverMode, bool withGallery);

/// The dialogs and wizards of a mode, a line each, for the tour and the sweep.
std::vector<DialogEntry> DialogsOf(bool serverMode);

/// Lets sections open what stands in other ones.
void LinkSections(CBTaskMMCDlg& window);

/// Lets the prompts pick folders of the service. The console outlives the pages that ask.
void SetRemoteFolderPicker(WindowPrompts& prompts, const Console& console);

/// What a click on the status bar opens.
CBrenDialog* CloudSpaceDialog(const Console& console, QWidget* parent);
CBrenDialog* BandwidthDialog(const Console& console, QWidget* parent);
