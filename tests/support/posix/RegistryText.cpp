#include "support/RegistryText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QString FileOf(platform::RegistryRoot root, QString key) {
    const QString folder = root == platform::RegistryRoot::LocalMachine
                               ? qEnvironmentVariable("BREN_HOME") + u"/etc/"_s
                               : qEnvironmentVariable("XDG_CONFIG_HOME") + u"/brenvia/"_s;
    return folder + key.replace(QLatin1Char('\\'), QLatin1Char('/')) + u".ini"_s;
}

} // namespace

RegistryText::RegistryText(platform::RegistryRoot root, QString key, QString name, const QString& text)
    : m_root(root), m_key(std::move(key)), m_name(std::move(name)) {
    QFile file(FileOf(m_root, m_key));
    QDir().mkpath(QFileInfo(file).path());
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(file.errorString()));
    file.write((m_name + u"=\""_s + text + u"\"\n"_s).toUtf8());
}

RegistryText::~RegistryText() {
    QFile::remove(FileOf(m_root, m_key));
}
