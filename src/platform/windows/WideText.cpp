#include "platform/windows/WideText.h"

#include <windows.h>

namespace platform {
namespace {

std::wstring Quoted(const std::wstring& argument) {
    if (!argument.empty() && argument.find_first_of(L" \t\n\v\"") == std::wstring::npos)
        return argument;
    std::wstring quoted = L"\"";
    size_t backslashes = 0;
    for (const wchar_t c : argument) {
        if (c == L'"')
            quoted.append(backslashes + 1, L'\\');
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, L'\\') + L'"';
}

} // namespace

std::wstring Wide(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0), L'\0');
    ::MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string Narrow(std::wstring_view wide) {
    const int size = static_cast<int>(wide.size());
    std::string utf8(::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, nullptr, 0, nullptr, nullptr),
                     '\0');
    ::WideCharToMultiByte(CP_UTF8, 0, wide.data(), size, utf8.data(), static_cast<int>(utf8.size()), nullptr,
                          nullptr);
    return utf8;
}

std::wstring CommandLine(const std::vector<std::string>& arguments) {
    std::wstring line;
    for (const std::string& argument : arguments)
        line += (line.empty() ? L"" : L" ") + Quoted(Wide(argument));
    return line;
}

} // namespace platform
