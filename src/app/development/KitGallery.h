#pragma once

class QWidget;
class UserPrompts;

// What wizards are made of, for the gallery: each in every state that it has. No parent owns them yet.

/// Every kind of field, plain, hovered, focused and disabled.
QWidget* MakeFieldGallery(UserPrompts& prompts);
/// A form, and fields with long texts and texts that run from right to left.
QWidget* MakeFormGallery(UserPrompts& prompts);
/// A tree with ticked, partly ticked, left out, failed and loading nodes, a picker's tree and a list with
/// boxes.
QWidget* MakeTreeGallery();
/// A property grid with every kind of row.
QWidget* MakeGridGallery(UserPrompts& prompts);

enum class SampleWizard { FirstPage, Busy, Failed };
/// A wizard's window as a part of the page, in one of its states.
QWidget* MakeWizardGallery(UserPrompts& prompts, SampleWizard state);
