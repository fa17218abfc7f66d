#include "zep/Mui.h"

#include "support/TestMain.h"
#include "zep/Text.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

class MuiTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_home;

    void Brand(const QByteArray& octets) {
        QFile file(m_home.filePath(u"branding.xml"_s));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        QCOMPARE(file.write(octets), octets.size());
        file.close();
        ZEPMuiInitialize(file.filesystemFileName());
    }

    QByteArray Log() const {
        QFile log(m_home.filePath(u"logging/BTaskMMC.log"_s));
        return log.open(QIODevice::ReadOnly) ? log.readAll() : QByteArray();
    }

private slots:
    void init() {
        qputenv("BREN_HOME", QFile::encodeName(m_home.path()));
        QFile::remove(m_home.filePath(u"logging/BTaskMMC.log"_s));
    }

    void cleanup() {
        ZEPMuiInitialize({});
        qunsetenv("BREN_HOME");
    }

    void everyNumberHasItsText() {
        for (const int number : {288, 289, 294, 295, 302, 303, 304, 308, 309, 310, 311})
            QVERIFY2(!ZEPMuiGetStringW(number).isEmpty(), qPrintable(QString::number(number)));
        for (const int number : {102, 105, 107, 119, 138})
            QVERIFY2(!ZEPMuiGetBrandingStringW(number).isEmpty(), qPrintable(QString::number(number)));
        QCOMPARE(ZEPMuiGetBrandingStringW(119), u"Brenvia Orbitdesk"_s);
        QCOMPARE(ZEPMuiGetStringW(119), QString());
        QCOMPARE(ZEPMuiGetBrandingStringW(-1), QString());
    }

    void brandingFiles_data() {
        const Columns<QByteArray, QString, QString, QByteArray> row("file", "desktop", "message", "trace");
        const QString ownDesktop = u"Brenvia Orbitdesk"_s;
        const QString ownMessage = u"Please select a folder first."_s;
        const QByteArray good = "<Branding Number='119'>Caf\xC3\xA9 &amp; Co</Branding>";
        const QString other = u"Caf\u00e9 & Co"_s;
        const auto document = [](const QByteArray& entries) -> QByteArray {
            return "<BrandingTexts>" + entries + "</BrandingTexts>";
        };
        row("both kinds", document(good + "<Message Number='309'>Pick one</Message>"), other, "Pick one", {});
        row("made empty", document("<Message Number='309'/>"), ownDesktop, {}, {});
        row("longest", document("<Message Number='309'>" + QByteArray(4095, 'x') + "</Message>"), ownDesktop,
            QString(4095, u'x'), {});
        row("too long", document(good + "<Message Number='309'>" + QByteArray(4096, 'x') + "</Message>"),
            other, ownMessage, "too long");
        row("unknown number", document("<Branding Number='9'>x</Branding>" + good), other, ownMessage,
            "unknown Branding number");
        row("no number", document("<Message>x</Message>" + good), other, ownMessage,
            "unknown Message number");
        row("unknown element", document("<Icon Number='309'>x</Icon>" + good), other, ownMessage,
            "unknown element");
        row("not well-formed", "<BrandingTexts>" + good, ownDesktop, ownMessage, "not a branding document");
        row("another document", "<Other>" + good + "</Other>", ownDesktop, ownMessage,
            "not a branding document");
        row("empty file", {}, ownDesktop, ownMessage, "not a branding document");
    }
    void brandingFiles() {
        const auto [file, desktop, message, trace] = Fetched<QByteArray, QString, QString, QByteArray>();
        Brand(file);
        QCOMPARE(ZEPMuiGetBrandingStringW(Branding::DesktopConsole), desktop);
        QCOMPARE(ZEPMuiGetStringW(Message::SelectFolderFirst), message);
        QVERIFY2(trace.isEmpty() ? Log().isEmpty() : Log().contains(trace), Log().constData());
    }
};

BTASK_TEST(MuiTest);
#include "MuiTest.moc"
