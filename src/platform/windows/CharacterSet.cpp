#include "platform/CharacterSet.h"
#include "platform/windows/Com.h"
#include "platform/windows/WideText.h"

#include <windows.h>

#include <mlang.h>

namespace platform {
namespace {

constexpr DWORD Latin1CodePage = 28591;
// IID_IMultiLanguage, which this compiler's libraries leave out.
constexpr IID MultiLanguageId{0x275c23e1, 0x3747, 0x11d0, {0x9f, 0xea, 0x00, 0xaa, 0x00, 0x3f, 0x86, 0x46}};

} // namespace

std::optional<std::string> ToLatin1(std::string_view utf8) {
    const ComUse com(COINIT_MULTITHREADED);
    const auto languages = MakeComObject<IMultiLanguage>(CLSID_CMultiLanguage, MultiLanguageId);
    if (!languages)
        return {};
    std::wstring wide = Wide(utf8);
    std::string latin1(wide.size() * 2, '\0'); // a replacement may be longer than what it stands for
    DWORD mode = 0;
    UINT taken = static_cast<UINT>(wide.size());
    UINT size = static_cast<UINT>(latin1.size());
    if (!wide.empty() && FAILED(languages->ConvertStringFromUnicode(&mode, Latin1CodePage, wide.data(),
                                                                    &taken, latin1.data(), &size)))
        return {};
    latin1.resize(wide.empty() ? 0 : size);
    return latin1;
}

} // namespace platform
