#include "settings/ProxyPage.h"
#include "SettingsBench.h"
#include "page/NoticeLine.h"
#include "settings/SettingsPanel.h"
#include "support/TestMain.h"

#include <QDialogButtonBox>
#include <QLabel>
#include <QPushButton>

using namespace Qt::Literals::StringLiterals;

namespace {

const QStringList FieldNames{u"ProxyAddr"_s, u"ProxyPort"_s, u"ProxyUser"_s, u"ProxyPwd"_s, u"ProxyBypass"_s};

/// The section with its proxy dialog open.
struct ProxyBench : SettingsBench {
    std::unique_ptr<CSettingsPanel> panel = std::make_unique<CSettingsPanel>(console);

    void Store(const QString& type, const QStringList& fields) {
        service->SetSetting("ProxyTypeChanged", type.toStdString());
        for (int index = 0; index < fields.size(); ++index)
            service->SetSetting(FieldNames[index].toStdString(), fields[index].toStdString());
    }

    CProxyPage* Open() {
        panel->EditProxy();
        reader.StepAll();
        service->ForgetRequests();
        return Dialog();
    }
    CProxyPage* Dialog() const { return panel->findChild<CProxyPage*>(); }
    QComboBox* Choice() const { return Dialog()->findChild<QComboBox*>(); }
    QList<QLineEdit*> Fields() const { return Dialog()->findChildren<QLineEdit*>(); }
    QPushButton* Button(QDialogButtonBox::StandardButton which) const {
        return Dialog()->findChild<QDialogButtonBox*>()->button(which);
    }
    QString Shown() const {
        QStringList texts;
        for (const QLineEdit* field : Fields())
            texts << field->text();
        return u"%1:%2"_s.arg(Choice()->currentIndex()).arg(texts.join(u','));
    }
    void Fill(const QStringList& texts) {
        for (int index = 0; index < texts.size(); ++index) {
            Fields()[index]->selectAll();
            QTest::keyClicks(Fields()[index], texts[index]);
        }
    }
    QStringList Save() {
        QTest::mouseClick(Button(QDialogButtonBox::Ok), Qt::LeftButton);
        reader.StepAll();
        return service.RequestLines().replaceInStrings(u"PUT /settings/"_s, QString());
    }
};

} // namespace

class ProxyPageTest : public QObject {
    Q_OBJECT

private slots:
    void theSavedTypeIsShown_data() {
        const Columns<QString, QString> row("savedType", "shown");
        row("disabled", "0", "0:host,8080,ann,pw,a;b");
        row("custom", "3", "1:host,8080,ann,pw,a;b");
        row("another", "1", "1:host,8080,ann,pw,a;b");
        row("no number", "x", "0:host,8080,ann,pw,a;b");
    }

    void theSavedTypeIsShown() {
        QFETCH(QString, savedType);
        ProxyBench bench;
        bench.Store(savedType, {u"host"_s, u"8080"_s, u"ann"_s, u"pw"_s, u"a;b"_s});
        bench.service->SetSetting("ProxyType", "3");
        QVERIFY(bench.Open());
        QTEST(bench.Shown(), "shown");
        QCOMPARE(bench.Fields()[3]->echoMode(), QLineEdit::Password);
    }

    void aCustomProxyIsWrittenInOrder() {
        ProxyBench bench;
        QVERIFY(bench.Open());
        QCOMPARE(bench.Shown(), u"0:,,,,"_s);
        bench.Choice()->setCurrentIndex(1);
        bench.Fill({u"host"_s, u"8080"_s, u"ann"_s, u"p&w"_s, u"a;b"_s});
        const auto* notice = bench.Dialog()->findChild<NoticeLine*>();
        QVERIFY(notice->Text().contains(u"\"&\"") && !notice->Text().contains(u"p&w"));
        QCOMPARE(bench.Save(),
                 (QStringList{u"ProxyType?ValueType=1&Value=3"_s, u"ProxyAddr?ValueType=2&Value=host"_s,
                              u"ProxyPort?ValueType=2&Value=8080"_s, u"ProxyUser?ValueType=2&Value=ann"_s,
                              u"ProxyPwd?ValueType=2&Value=p&w"_s, u"ProxyBypass?ValueType=2&Value=a;b"_s,
                              u"ProxyTypeChanged?ValueType=1&Value=3"_s}));
        const ProxyEnv proxy = ZEPGetProxyEnv();
        QCOMPARE(proxy.type, 3);
        QCOMPARE(
            (QStringList{proxy.address, proxy.port, proxy.user, proxy.password, proxy.bypass}).join(u','),
            u"host,8080,ann,p&w,a;b"_s);
    }

    void disablingKeepsWhatWasStored() {
        ProxyBench bench;
        bench.Store(u"3"_s, {u"host"_s, u"8080"_s, u"ann"_s, u"pw"_s, u"a;b"_s});
        QVERIFY(bench.Open());
        bench.Fields()[0]->setText(u"changed"_s);
        bench.Choice()->setCurrentIndex(0);
        QCOMPARE(bench.Save(), (QStringList{u"ProxyType?ValueType=1&Value=0"_s,
                                            u"ProxyTypeChanged?ValueType=1&Value=0"_s}));
        QTRY_VERIFY(!bench.Dialog());
        QVERIFY(bench.Open());
        QCOMPARE(bench.Shown(), u"0:host,8080,ann,pw,a;b"_s);
    }

    void cancelWritesNothing() {
        ProxyBench bench;
        QVERIFY(bench.Open());
        bench.panel->EditProxy();
        QCOMPARE(bench.panel->findChildren<CProxyPage*>().size(), 1);
        bench.Choice()->setCurrentIndex(1);
        bench.Fill({u"host"_s});
        QTest::keyClick(bench.Dialog(), Qt::Key_Escape);
        bench.reader.StepAll();
        QCOMPARE(bench.service.RequestLines(), QStringList());
        QTRY_VERIFY(!bench.Dialog());
    }

    void nothingIsAnnouncedWhenTheServiceGoesAway() {
        ProxyBench bench;
        QVERIFY(bench.Open());
        bench.Choice()->setCurrentIndex(1);
        bench.service->SetFault(devservice::HttpFault::GarbageHeaders, {}, "ProxyPort");
        const QStringList written = bench.Save();
        QCOMPARE(written.size(), 3);
        QCOMPARE(bench.Stored(u"ProxyTypeChanged"_s), u"(none)"_s);
    }

    void nothingIsTakenBeforeTheValuesAreRead() {
        ProxyBench bench;
        bench.Store(u"3"_s, {u"host"_s});
        bench.service->Stop();
        QVERIFY(bench.Open());
        QVERIFY(!bench.Button(QDialogButtonBox::Ok)->isEnabled());
        QVERIFY(!bench.Choice()->isEnabled());
        QVERIFY(bench.Dialog()->findChild<NoticeLine*>()->isVisible());
        QTest::keyClick(bench.Dialog(), Qt::Key_Return);
        QVERIFY(bench.Dialog()->isVisible());
        bench.service->Start();
        QTRY_VERIFY((bench.reader.StepAll(), bench.Button(QDialogButtonBox::Ok)->isEnabled()));
        QCOMPARE(bench.Shown(), u"1:host,,,,"_s);
        QVERIFY(!bench.Dialog()->findChild<NoticeLine*>()->isVisible());
    }

    void theChoiceRulesTheFields() {
        ProxyBench bench;
        QVERIFY(bench.Open());
        const auto explanation = [&bench] {
            for (const QLabel* label : bench.Dialog()->findChildren<QLabel*>())
                if (label->text().contains(u"roxy support") || label->text().startsWith(u"Warning"))
                    return label->text();
            return QString();
        };
        struct Case {
            int index;
            bool enabled;
            int type;
            QString explanation;
        };
        const std::vector<Case> cases{
            {1, true, 3,
             u"Proxy support is enabled. Please configure the proxy settings below. Leave the field blank if not applicable. "_s},
            {-1, false, 3, u"Warning: No Proxy Type Is Selected!"_s},
            {0, false, 0,
             u"Proxy support is disabled. Brenvia will connect to Cloud Storage directly. This is a common case for home users."_s},
            {-1, false, 0, u"Warning: No Proxy Type Is Selected!"_s},
        };
        for (const Case& each : cases) {
            bench.Choice()->setCurrentIndex(each.index);
            for (const QLineEdit* field : bench.Fields())
                QCOMPARE(field->isEnabled(), each.enabled);
            QCOMPARE(bench.Dialog()->Wanted().type, each.type);
            QCOMPARE(explanation(), each.explanation);
        }
    }
};

BTASK_TEST(ProxyPageTest);
#include "ProxyPageTest.moc"
