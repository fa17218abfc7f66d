#include "settings/SettingsCatalog.h"
#include "settings/SettingValues.h"
#include "support/TestMain.h"

#include <QFile>
#include <QTemporaryDir>

using namespace Qt::Literals::StringLiterals;

namespace {

QString Describe(const SettingsCatalog& catalog) {
    QStringList lines;
    for (const SettingGroup& group : catalog) {
        lines << u"["_s + group.title + u"]"_s;
        for (const Setting& each : group.settings)
            lines << u"%1|%2|%3|%4%5"_s.arg(each.name, each.description)
                         .arg(static_cast<int>(each.type))
                         .arg(each.defaultValue, each.needsRestart ? u"|restart"_s : QString());
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

} // namespace

class SettingsCatalogTest : public QObject {
    Q_OBJECT

private slots:
    void catalogsAreRead_data() {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("catalog");
        const QByteArray good = "<S Name='N' Descr='D' ValueType='1' DefaultValue='5' RebootReq='TRUE'/>";
        QTest::newRow("complete") << InGroup(good) << u"[G] N|D|1|5|restart"_s;
        QTest::newRow("other types") << InGroup("<S Name='A' Descr='a' ValueType='2'/><S Name='B' Descr='b' "
                                                "ValueType='4' DefaultValue='True' RebootReq='yes'/>")
                                     << u"[G] A|a|2| B|b|4|True"_s;
        QTest::newRow("unknown types") << InGroup("<S Name='A' ValueType='3'/><S Name='B' ValueType='x'/><S "
                                                  "Name='C'/><S Name='D' ValueType='4294967297'/>" +
                                                  good)
                                       << u"[G] N|D|1|5|restart"_s;
        QTest::newRow("no name") << InGroup("<S Descr='D' ValueType='1'/>") << u"[G]"_s;
        QTest::newRow("no description") << InGroup("<S Name='N' ValueType='1'/>") << u"[G] N|N|1|"_s;
        QTest::newRow("markup in texts")
            << InGroup("<S Name='N' Descr='&lt;b&gt; &amp; \"q\"' ValueType='2'/>")
            << u"[G] N|<b> & \"q\"|2|"_s;
        QTest::newRow("groups in order") << QByteArray("<SettingGroups><X GroupName='B'/><Y><Settings>" +
                                                       good + "</Settings></Y></SettingGroups>")
                                         << u"[B] [] N|D|1|5|restart"_s;
        QTest::newRow("other root") << QByteArray("<Groups><Group GroupName='G'/></Groups>") << QString();
        QTest::newRow("empty") << QByteArray() << QString();
        QTest::newRow("no XML") << QByteArray("[settings]\nUploadBandwidth=5\n") << QString();
        QTest::newRow("cut off") << InGroup(good).chopped(20) << QString();
        QTest::newRow("binary") << QByteArray("\x7f\x45LF\0\1\2", 7) << QString();
        QTest::newRow("deep") << Nested(100'000) << u"[]"_s;
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

    void aMissingFileIsAnEmptyCatalog() {
        QVERIFY(LoadSettingsCatalog("/no/such/file").empty());
        const QTemporaryDir folder;
        QVERIFY(LoadSettingsCatalog(folder.path().toStdString()).empty());
    }

    void theQuerysLimitsAreTold_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("named");
        QTest::newRow("plain") << u"plain text #1 50% 100%x ~'\"<ä\n\u202E"_s << QString();
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("ampersand") << u"a&b"_s << u"\"&\""_s;
        QTest::newRow("plus") << u"+"_s << u"\"+\""_s;
        QTest::newRow("escape") << u"50%aF"_s << u"\"%\""_s;
        QTest::newRow("half an escape") << u"%a"_s << QString();
        QTest::newRow("zero") << u"a"_s + QChar(u'\0') << u"zero characters"_s;
        QTest::newRow("all") << u"&+%00"_s + QChar(u'\0') << u"\"&\", \"+\", \"%\", zero characters"_s;
    }

    void theQuerysLimitsAreTold() {
        QFETCH(QString, text);
        QFETCH(QString, named);
        const QString remark = QueryRemark(text);
        QCOMPARE(remark.isEmpty(), named.isEmpty());
        QVERIFY2(remark.contains(u"reads "_s + named) || named.isEmpty(), qPrintable(remark));
    }

    void bodiesBecomeTexts_data() {
        QTest::addColumn<ServiceClient::ValueType>("type");
        QTest::addColumn<QByteArray>("body");
        QTest::addColumn<QString>("text");
        using Type = ServiceClient::ValueType;
        QTest::newRow("TRUE") << Type::Boolean << QByteArray("TRUE") << u"True"_s;
        QTest::newRow("1 is not true") << Type::Boolean << QByteArray("1") << u"False"_s;
        QTest::newRow("nothing is not true") << Type::Boolean << QByteArray("") << u"False"_s;
        QTest::newRow("leading number") << Type::Integer << QByteArray(" -12 KB") << u"-12"_s;
        QTest::newRow("no number") << Type::Integer << QByteArray("many") << u"0"_s;
        QTest::newRow("text up to a zero") << Type::String << QByteArray("\xC3\xA4\nb\0c", 6) << u"ä\nb"_s;
    }

    void bodiesBecomeTexts() {
        QFETCH(ServiceClient::ValueType, type);
        QFETCH(QByteArray, body);
        QTEST(TypedText(body, type), "text");
    }
};

BTASK_TEST(SettingsCatalogTest);
#include "SettingsCatalogTest.moc"
