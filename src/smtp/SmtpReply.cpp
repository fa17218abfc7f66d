#include "smtp/SmtpReply.h"

#include <QStringDecoder>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype MostShown = 1000;
constexpr std::size_t CodeSize = 3;

} // namespace

std::optional<std::string> TakeReply(std::string& received) {
    std::size_t begin = 0;
    for (std::size_t end; (end = received.find('\n', begin)) != std::string::npos; begin = end + 1) {
        if (end > begin + CodeSize && received[begin + CodeSize] == '-')
            continue;
        std::string reply = received.substr(0, end + 1);
        received.erase(0, end + 1);
        return reply;
    }
    return {};
}

QString ReplyText(const std::string& reply) {
    QStringDecoder utf8(QStringDecoder::Utf8);
    QString text = utf8(QByteArrayView(reply));
    if (utf8.hasError())
        text = QString::fromLatin1(reply);
    text.remove(u'\r');
    for (QChar& c : text)
        if (c.category() == QChar::Other_Control && c != u'\n')
            c = u' ';
    text = text.trimmed();
    return text.size() > MostShown ? text.first(MostShown) + u"..."_s : text;
}
