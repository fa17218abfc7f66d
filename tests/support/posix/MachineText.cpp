#include "support/MachineText.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QString FileOf(QString key) {
    return qEnvironmentVariable("BREN_HOME") + u"/etc/"_s + key.replace(QLatin1Char('\\'), QLatin1Char('/')) +
           u".ini"_s;
}

} // namespace

MachineText::MachineText(QString key, QString name, const QString& text)
    : m_key(std::move(key)), m_name(std::move(name)) {
    QFile file(FileOf(m_key));
    QDir().mkpath(QFileInfo(file).path());
    QVERIFY2(file.open(QIODevice::WriteOnly | QIODevice::Truncate), qPrintable(file.errorString()));
    file.write((m_name + u"=\""_s + text + u"\"\n"_s).toUtf8());
}

MachineText::~MachineText() {
    QFile::remove(FileOf(m_key));
}
