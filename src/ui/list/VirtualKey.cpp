#include "list/VirtualKey.h"

#include <QKeyEvent>

#include <algorithm>
#include <array>

namespace {

struct NamedKey {
    int key;
    int code;
};

constexpr std::array<NamedKey, 56> NamedKeys{{
    {Qt::Key_Backspace, 0x08},   {Qt::Key_Tab, 0x09},         {Qt::Key_Backtab, 0x09},
    {Qt::Key_Clear, 0x0C},       {Qt::Key_Return, 0x0D},      {Qt::Key_Enter, 0x0D},
    {Qt::Key_Shift, 0x10},       {Qt::Key_Control, 0x11},     {Qt::Key_Alt, 0x12},
    {Qt::Key_Pause, 0x13},       {Qt::Key_CapsLock, 0x14},    {Qt::Key_Escape, 0x1B},
    {Qt::Key_Space, 0x20},       {Qt::Key_PageUp, 0x21},      {Qt::Key_PageDown, 0x22},
    {Qt::Key_End, 0x23},         {Qt::Key_Home, 0x24},        {Qt::Key_Left, 0x25},
    {Qt::Key_Up, 0x26},          {Qt::Key_Right, 0x27},       {Qt::Key_Down, 0x28},
    {Qt::Key_Select, 0x29},      {Qt::Key_Print, 0x2C},       {Qt::Key_Insert, 0x2D},
    {Qt::Key_Delete, DeleteKey}, {Qt::Key_Help, 0x2F},        {Qt::Key_Meta, 0x5B},
    {Qt::Key_Super_L, 0x5B},     {Qt::Key_Super_R, 0x5C},     {Qt::Key_Menu, 0x5D},
    {Qt::Key_NumLock, 0x90},     {Qt::Key_ScrollLock, 0x91},  {Qt::Key_Semicolon, 0xBA},
    {Qt::Key_Colon, 0xBA},       {Qt::Key_Equal, 0xBB},       {Qt::Key_Plus, 0xBB},
    {Qt::Key_Comma, 0xBC},       {Qt::Key_Less, 0xBC},        {Qt::Key_Minus, 0xBD},
    {Qt::Key_Underscore, 0xBD},  {Qt::Key_Period, 0xBE},      {Qt::Key_Greater, 0xBE},
    {Qt::Key_Slash, 0xBF},       {Qt::Key_Question, 0xBF},    {Qt::Key_QuoteLeft, 0xC0},
    {Qt::Key_AsciiTilde, 0xC0},  {Qt::Key_BracketLeft, 0xDB}, {Qt::Key_BraceLeft, 0xDB},
    {Qt::Key_Backslash, 0xDC},   {Qt::Key_Bar, 0xDC},         {Qt::Key_BracketRight, 0xDD},
    {Qt::Key_BraceRight, 0xDD},  {Qt::Key_Apostrophe, 0xDE},  {Qt::Key_QuoteDbl, 0xDE},
    {Qt::Key_Asterisk, 0x6A},    {Qt::Key_AltGr, 0x12},
}};

constexpr std::array<NamedKey, 5> KeypadKeys{{
    {Qt::Key_Asterisk, 0x6A},
    {Qt::Key_Plus, 0x6B},
    {Qt::Key_Minus, 0x6D},
    {Qt::Key_Period, 0x6E},
    {Qt::Key_Slash, 0x6F},
}};

template <size_t Count>
int CodeIn(const std::array<NamedKey, Count>& keys, int key) {
    const auto found =
        std::find_if(keys.begin(), keys.end(), [key](NamedKey named) { return named.key == key; });
    return found == keys.end() ? 0 : found->code;
}

} // namespace

int VirtualKeyOf(const QKeyEvent& event) {
    const int key = event.key();
    const bool digit = key >= Qt::Key_0 && key <= Qt::Key_9;
    if (event.modifiers() & Qt::KeypadModifier) {
        if (digit)
            return 0x60 + key - Qt::Key_0;
        if (const int code = CodeIn(KeypadKeys, key))
            return code;
    }
    if (digit || (key >= Qt::Key_A && key <= Qt::Key_Z))
        return key;
    if (key >= Qt::Key_F1 && key <= Qt::Key_F24)
        return 0x70 + key - Qt::Key_F1;
    return CodeIn(NamedKeys, key);
}

unsigned ReleasedKeyFlags(const QKeyEvent& event) {
    constexpr unsigned wasDownAndIsUp = 0xC000;
    constexpr unsigned withAlt = 0x2000;
    return wasDownAndIsUp | (event.modifiers() & Qt::AltModifier ? withAlt : 0);
}
