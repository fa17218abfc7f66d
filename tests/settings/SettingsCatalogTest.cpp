#include "service/SettingsCatalog.h"
#include "service/RequestText.h"
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
        row("other root", "<Groups><Group GroupName='G'/></Groups>", {});
        row("empty", {}, {});
        row("no XML", "[settings]\nUploadBandwidth=5\n", {});
        row("cut off", InGroup(good).chopped(20), {});
        row("binary", QByteArray("\x7f\x45LF\0\1\2", 7), {});
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

    void aMissingFileIsAnEmptyCatalog() {
        QVERIFY(LoadSettingsCatalog("/no/such/file").empty());
        const QTemporaryDir folder;
        QVERIFY(LoadSettingsCatalog(folder.path().toStdString()).empty());
    }

    void theQuerysLimitsAreTold_data() {
        const Columns<QString, QString> row("text", "named");
        row("plain", "plain text #1 50% 100%x ~'\"<ä\n\u202E", {});
        row("empty", {}, {});
        row("ampersand", "a&b", "\"&\"");
        row("plus", "+", "\"+\"");
        row("escape", "50%aF", "\"%\"");
        row("half an escape", "%a", {});
        row("zero", u"a"_s + QChar(u'\0'), "zero characters");
        row("all", u"&+%00"_s + QChar(u'\0'), "\"&\", \"+\", \"%\", zero characters");
    }

    void theQuerysLimitsAreTold() {
        const auto [text, named] = Fetched<QString, QString>();
        const QString remark = QueryRemark(text);
        QCOMPARE(remark.isEmpty(), named.isEmpty());
        QVERIFY2(remark.contains(u"reads "_s + named) || named.isEmpty(), qPrintable(remark));
    }

    void bodiesBecomeTexts_data() {
        const Columns<ServiceClient::ValueType, QByteArray, QString> row("type", "body", "text");
        using Type = ServiceClient::ValueType;
        row("TRUE", Type::Boolean, "TRUE", "True");
        row("1 is not true", Type::Boolean, "1", "False");
        row("nothing is not true", Type::Boolean, "", "False");
        row("leading number", Type::Integer, " -12 KB", "-12");
        row("no number", Type::Integer, "many", "0");
        row("text up to a zero", Type::String, QByteArray("\xC3\xA4\nb\0c", 6), "ä\nb");
    }

    void bodiesBecomeTexts() {
        const auto [type, body] = Fetched<ServiceClient::ValueType, QByteArray>();
        QTEST(TypedText(body, type), "text");
    }
};

BTASK_TEST(SettingsCatalogTest);
#include "SettingsCatalogTest.moc"
