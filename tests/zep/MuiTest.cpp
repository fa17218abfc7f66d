#include "zep/Mui.h"

#include "support/TestMain.h"
#include "zep/Text.h"

#include <QFile>
#include <QTemporaryDir>

class MuiTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_home;

    void Brand(const QByteArray& octets) {
        QFile file(m_home.filePath(QStringLiteral("branding.xml")));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(octets), octets.size());
        file.close();
        ZEPMuiInitialize(file.filesystemFileName());
    }

    QByteArray Log() const {
        QFile log(m_home.filePath(QStringLiteral("logging/BTaskMMC.log")));
        return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
    }

private slots:
    void init() {
        qputenv("BREN_HOME", QFile::encodeName(m_home.path()));
        QFile::remove(m_home.filePath(QStringLiteral("logging/BTaskMMC.log")));
    }

    void cleanup() {
        ZEPMuiInitialize({});
        qunsetenv("BREN_HOME");
    }

    void EveryNumberHasItsText() {
        for (const int number : {288, 289, 302, 303, 304, 309, 310, 311})
            QVERIFY2(!ZEPMuiGetStringW(number).isEmpty(), qPrintable(QString::number(number)));
        for (const int number : {102, 105, 107, 119, 138})
            QVERIFY2(!ZEPMuiGetBrandingStringW(number).isEmpty(), qPrintable(QString::number(number)));
        QCOMPARE(ZEPMuiGetBrandingStringW(119), QStringLiteral("Brenvia Orbitdesk"));
        QCOMPARE(ZEPMuiGetStringW(119), QString());
        QCOMPARE(ZEPMuiGetBrandingStringW(-1), QString());
    }

    void BrandingFiles_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("desktop");
        QTest::addColumn<QString>("message");
        QTest::addColumn<QByteArray>("trace");
        const QString ownDesktop = QStringLiteral("Brenvia Orbitdesk");
        const QString ownMessage = QStringLiteral("Please select a folder first.");
        const QByteArray good = "<Branding Number='119'>Caf\xC3\xA9 &amp; Co</Branding>";
        const QString other = QStringLiteral("Caf\u00e9 & Co");
        const auto document = [](const QByteArray& entries) -> QByteArray {
            return "<BrandingTexts>" + entries + "</BrandingTexts>";
        };
        QTest::newRow("both kinds") << document(good + "<Message Number='309'>Pick one</Message>") << other
                                    << QStringLiteral("Pick one") << QByteArray();
        QTest::newRow("made empty") << document("<Message Number='309'/>") << ownDesktop << QString()
                                    << QByteArray();
        QTest::newRow("longest") << document("<Message Number='309'>" + QByteArray(4095, 'x') + "</Message>")
                                 << ownDesktop << QString(4095, u'x') << QByteArray();
        QTest::newRow("too long") << document(good + "<Message Number='309'>" + QByteArray(4096, 'x') +
                                              "</Message>")
                                  << other << ownMessage << QByteArray("too long");
        QTest::newRow("unknown number") << document("<Branding Number='9'>x</Branding>" + good) << other
                                        << ownMessage << QByteArray("unknown Branding number");
        QTest::newRow("no number") << document("<Message>x</Message>" + good) << other << ownMessage
                                   << QByteArray("unknown Message number");
        QTest::newRow("unknown element") << document("<Icon Number='309'>x</Icon>" + good) << other
                                         << ownMessage << QByteArray("unknown element");
        QTest::newRow("not well-formed")
            << "<BrandingTexts>" + good << ownDesktop << ownMessage << QByteArray("not a branding document");
        QTest::newRow("another document") << "<Other>" + good + "</Other>" << ownDesktop << ownMessage
                                          << QByteArray("not a branding document");
        QTest::newRow("empty file") << QByteArray() << ownDesktop << ownMessage
                                    << QByteArray("not a branding document");
    }
    void BrandingFiles() {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, trace);
        Brand(file);
        QTEST(ZEPMuiGetBrandingStringW(Branding::DesktopConsole), "desktop");
        QTEST(ZEPMuiGetStringW(Message::SelectFolderFirst), "message");
        QVERIFY2(trace.isEmpty() ? Log().isEmpty() : Log().contains(trace), Log().constData());
    }
};

BTASK_TEST(MuiTest);
#include "MuiTest.moc"
