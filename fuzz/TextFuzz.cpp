#include "Require.h"
#include "zep/Text.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const QByteArrayView octets(data, qsizetype(size));
    const QString text = ZEPUTF8ToUnicode(octets);
    const QByteArray utf8 = ZEPUnicodeToUTF8(text);
    Require(ZEPUTF8ToUnicode(utf8) == text);
    Require(text.contains(QChar::ReplacementCharacter) || utf8 == octets);
    Require(ZEPURLDecodeUTF8(ZEPUrlEncodeUnicode(text)) == text);
    Require(ZEPBase64DecodeUnicode(QString::fromLatin1(ZEPBase64Encode(utf8))) == text);
    Require(HtmlDecode(text).size() <= text.size());
    ZEPURLDecodeUTF8(text);
    ZEPBase64DecodeUnicode(text);

    // The same octets as UTF-16, which may be malformed as well.
    const QString wide(reinterpret_cast<const QChar*>(QByteArray(octets.data(), octets.size()).constData()),
                       qsizetype(size / sizeof(QChar)));
    Require(wide.isValidUtf16() == (ZEPUTF8ToUnicode(ZEPUnicodeToUTF8(wide)) == wide));
    ZEPURLDecodeUTF8(ZEPUrlEncodeUnicode(wide));
    HtmlDecode(wide);
    return 0;
}
