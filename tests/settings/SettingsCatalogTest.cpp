#include "service/SettingsCatalog.h"
#include "support/TestMain.h"
#include "zep/Xml.h"

#include <QDirIterator>
#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace {

QString Describe(const SettingsCatalog& catalog) {
    QStringList lines;
    for (const SettingGroup& group : catalog) {
        lines << u"["_s + group.title + u"]"_s;
        for (const CatalogSetting& each : group.settings)
            lines << u"%1|%2|%3|%4%5"_s.arg(each.name, each.description)
                         .arg(static_cast<int>(each.type))
                         .arg(each.fallback, each.needsRestart ? u"|restart"_s : QString());
    }
    return lines.join(u' ');
}

QByteArray Nested(int depth) {
    return QByteArray("<SettingGroups>")
        .append(QByteArray("<a>").repeated(depth))
        .append(QByteArray("</a>").repeated(depth))
        .append("</SettingGroups>");
}

QByteArray InGroup(const QByteArray& settings) {
    return "<SettingGroups><Group GroupName='G'><Settings>" + settings +
           "</Settings></Group></SettingGroups>";
}

/// All that was written to the log below the home folder.
QString Traced(const QTemporaryDir& home) {
    QString lines;
    QDirIterator files(home.path(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.fileName().contains(u"logging"_s) && file.open(QIODevice::ReadOnly))
            lines += QString::fromUtf8(file.readAll());
    }
    return lines;
}

} // namespace

class SettingsCatalogTest : public QObject {
    Q_OBJECT

private slots:
    void catalogsAreRead_data() {
        const Columns<QByteArray, QString> row("file", "catalog");
        const QByteArray good = "<S Name='N' Descr='D' ValueType='1' DefaultValue='5' RebootReq='TRUE'/>";
        row("complete", InGroup(good), "[G] N|D|1|5|restart");
        row("other types",
            InGroup("<S Name='A' Descr='a' ValueType='2'/><S Name='B' Descr='b' "
                    "ValueType='4' DefaultValue='True' RebootReq='yes'/>"),
            "[G] A|a|2| B|b|4|True");
        row("unknown types",
            InGroup("<S Name='A' ValueType='3'/><S Name='B' ValueType='x'/><S "
                    "Name='C'/><S Name='D' ValueType='4294967297'/>" +
                    good),
            "[G] N|D|1|5|restart");
        row("no name", InGroup("<S Descr='D' ValueType='1'/>"), "[G]");
        row("no description", InGroup("<S Name='N' ValueType='1'/>"), "[G] N|N|1|");
        row("markup in texts", InGroup("<S Name='N' Descr='&lt;b&gt; &amp; \"q\"' ValueType='2'/>"),
            "[G] N|<b> & \"q\"|2|");
        row("groups in order",
            QByteArray("<SettingGroups><X GroupName='B'/><Y><Settings>" + good +
                       "</Settings></Y></SettingGroups>"),
            "[B] [] N|D|1|5|restart");
        row("deep", Nested(100'000), "[]");
    }

    void catalogsAreRead() {
        QFETCH(QByteArray, file);
        const QTemporaryDir folder;
        QFile catalog(folder.filePath(u"settings.xml"_s));
        QVERIFY(catalog.open(QIODevice::WriteOnly));
        catalog.write(file);
        catalog.close();
        QTEST(Describe(LoadSettingsCatalog(catalog.fileName().toStdString())), "catalog");
    }

    void brokenCatalogsSayWhere_data() {
        const Columns<QByteArray, QString> row("file", "place");
        row("missing", {}, "cannot be read: ");
        row("other root", "<Groups><Group GroupName='G'/></Groups>", "line 1: ");
        row("empty", " ", "line 1: ");
        row("no XML", "[settings]\nUploadBandwidth=5\n", "line ");
        row("cut off", "<SettingGroups>\n<Group>\n<Settings>", "line 3: ");
        row("tags crossed", "<SettingGroups>\n<Group>\n</Settings>\n</Group></SettingGroups>", "line 3: ");
        row("two roots", "<SettingGroups/>\n<SettingGroups/>", "line ");
        row("binary", QByteArray("\x7f\x45LF\0\1\2", 7), "line 1: ");
    }

    void brokenCatalogsSayWhere() {
        const auto [content, place] = Fetched<QByteArray, QString>();
        const QTemporaryDir folder;
        qputenv("BREN_HOME", folder.path().toUtf8());
        QFile catalog(folder.filePath(u"settings.xml"_s));
        if (!content.isNull()) {
            QVERIFY(catalog.open(QIODevice::WriteOnly));
            catalog.write(content);
            catalog.close();
        }
        QString failure;
        QVERIFY(LoadSettingsCatalog(catalog.fileName().toStdString(), &failure).empty());
        QVERIFY2(failure.contains(catalog.fileName()) && failure.contains(place), qPrintable(failure));
        QVERIFY2(Traced(folder).contains(failure), "the log says it too");
        qunsetenv("BREN_HOME");
    }

    void whatIsLeftOutIsTraced() {
        const QTemporaryDir folder;
        qputenv("BREN_HOME", folder.path().toUtf8());
        const auto document =
            XmlDocument::FromText(QString::fromUtf8(InGroup("<S Name='Odd' ValueType='7'/>")));
        QCOMPARE(Describe(ParseSettingsCatalog(*document)), u"[G]"_s);
        QVERIFY(Traced(folder).contains(u"\"Odd\" of type \"7\""_s));
        qunsetenv("BREN_HOME");
    }
};

BTASK_TEST(SettingsCatalogTest);
#include "SettingsCatalogTest.moc"
