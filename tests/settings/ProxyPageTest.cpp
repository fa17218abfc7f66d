#include "settings/ProxyPage.h"
#include "SettingsFixture.h"
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
struct ProxyFixture : SettingsFixture {
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
        return Written().replaceInStrings(u"PUT /settings/"_s, QString());
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
        ProxyFixture fixture;
        fixture.Store(savedType, {u"host"_s, u"8080"_s, u"ann"_s, u"pw"_s, u"a;b"_s});
        fixture.service->SetSetting("ProxyType", "3");
        QVERIFY(fixture.Open());
        QTEST(fixture.Shown(), "shown");
        QCOMPARE(fixture.Fields()[3]->echoMode(), QLineEdit::Password);
    }

    void onlyChangesAreWrittenInOrder_data() {
        const Columns<QString, int, QStringList, QStringList> row("savedType", "choice", "typed", "written");
        const auto type = [](int number) {
            return QStringList{u"ProxyType?ValueType=1&Value=%1"_s.arg(number),
                               u"ProxyTypeChanged?ValueType=1&Value=%1"_s.arg(number)};
        };
        row("nothing", "3", 1, {}, {});
        row("nothing of a disabled one", "0", 0, {}, {});
        row("one field", "3", 1, {u"other"_s},
            {type(3)[0], u"ProxyAddr?ValueType=2&Value=other"_s, type(3)[1]});
        row("the type", "0", 1, {}, type(3));
        row("all", "0", 1, {u"h"_s, u"1"_s, u"u"_s, u"p"_s, u"b"_s},
            {type(3)[0], u"ProxyAddr?ValueType=2&Value=h"_s, u"ProxyPort?ValueType=2&Value=1"_s,
             u"ProxyUser?ValueType=2&Value=u"_s, u"ProxyPwd?ValueType=2&Value=p"_s,
             u"ProxyBypass?ValueType=2&Value=b"_s, type(3)[1]});
        row("fields of one that is disabled after all", "3", 0, {u"other"_s}, type(0));
    }

    void onlyChangesAreWrittenInOrder() {
        const auto [savedType, choice, typed, written] = Fetched<QString, int, QStringList, QStringList>();
        ProxyFixture fixture;
        fixture.Store(savedType, {u"host"_s, u"8080"_s, u"ann"_s, u"pw"_s, u"a;b"_s});
        QVERIFY(fixture.Open());
        fixture.Choice()->setCurrentIndex(1);
        fixture.Fill(typed);
        fixture.Choice()->setCurrentIndex(choice);
        QCOMPARE(fixture.Save(), written);
        QTRY_VERIFY(!fixture.Dialog());
        if (!written.isEmpty()) {
            const ProxyEnv proxy = ZEPGetProxyEnv();
            QCOMPARE(proxy.type, choice == 1 ? 3 : 0);
            QCOMPARE(proxy.address, typed.value(0, u"host"_s));
        }
    }

    void aPasswordIsNeverSentChanged() {
        ProxyFixture fixture;
        QVERIFY(fixture.Open());
        fixture.Choice()->setCurrentIndex(1);
        const auto* notice = fixture.Dialog()->findChild<NoticeLine*>();
        fixture.Fill({u"host"_s, u"8080"_s, u"a+b"_s});
        QVERIFY(notice->Text().contains(u"\"+\""));
        fixture.Fill({u"host"_s, u"8080"_s, u"ann"_s, u"p&w"_s});
        QCOMPARE(fixture.Save(), QStringList());
        QVERIFY(fixture.Dialog()->isVisible());
        QVERIFY2(notice->Text().contains(u"\"&\"") && !notice->Text().contains(u"p&w"),
                 qPrintable(notice->Text()));
        fixture.Fill({u"host"_s, u"8080"_s, u"ann"_s, u"pw"_s});
        fixture.service->SetAnswer("/settings/ProxyPwd?",
                                   devservice::Answer{200, {}}); // taken, and not stored
        fixture.Save();
        QCOMPARE(notice->Text(), u"The password was not stored as typed."_s);
        QCOMPARE(fixture.Stored(u"ProxyTypeChanged"_s), u"(none)"_s);
    }

    void cancelWritesNothing() {
        ProxyFixture fixture;
        QVERIFY(fixture.Open());
        fixture.panel->EditProxy();
        QCOMPARE(fixture.panel->findChildren<CProxyPage*>().size(), 1);
        fixture.Choice()->setCurrentIndex(1);
        fixture.Fill({u"host"_s});
        QTest::keyClick(fixture.Dialog(), Qt::Key_Escape);
        fixture.reader.StepAll();
        QCOMPARE(fixture.service.RequestLines(), QStringList());
        QTRY_VERIFY(!fixture.Dialog());
    }

    void aBrokenOffSaveKeepsWhatWasTyped() {
        ProxyFixture fixture;
        QVERIFY(fixture.Open());
        fixture.Choice()->setCurrentIndex(1);
        fixture.Fill({u"host"_s, u"8080"_s, u"ann"_s});
        fixture.service->SetFault(devservice::HttpFault::GarbageHeaders, {}, "ProxyPort");
        QCOMPARE(fixture.Save().size(), 3);
        QCOMPARE(fixture.Stored(u"ProxyTypeChanged"_s), u"(none)"_s);
        QVERIFY(fixture.Dialog()->findChild<NoticeLine*>()->Text().contains(u"\"Proxy Port\""));
        QCOMPARE(fixture.Shown(), u"1:host,8080,ann,,"_s);
        fixture.service->ClearFaults();
        fixture.Save();
        QTRY_VERIFY(!fixture.Dialog());
        QCOMPARE(fixture.Stored(u"ProxyUser"_s), u"ann"_s);
        QCOMPARE(fixture.Stored(u"ProxyTypeChanged"_s), u"3"_s);
    }

    void theChoiceRulesTheFields() {
        ProxyFixture fixture;
        QVERIFY(fixture.Open());
        const auto explanation = [&fixture] {
            for (const QLabel* label : fixture.Dialog()->findChildren<QLabel*>())
                if (label->text().contains(u"roxy support") || label->text().startsWith(u"Warning"))
                    return label->text();
            return QString();
        };
        struct Case {
            int index;
            bool enabled;
            QString explanation;
        };
        const std::vector<Case> cases{
            {1, true,
             u"Proxy support is enabled. Please configure the proxy settings below. Leave the field blank if not applicable. "_s},
            {-1, false, u"Warning: No Proxy Type Is Selected!"_s},
            {0, false,
             u"Proxy support is disabled. Brenvia will connect to Cloud Storage directly. This is a common case for home users."_s},
            {-1, false, u"Warning: No Proxy Type Is Selected!"_s},
        };
        for (const Case& each : cases) {
            fixture.Choice()->setCurrentIndex(each.index);
            for (const QLineEdit* field : fixture.Fields())
                QCOMPARE(field->isEnabled(), each.enabled);
            QCOMPARE(explanation(), each.explanation);
        }
    }
};

BTASK_TEST(ProxyPageTest);
#include "ProxyPageTest.moc"
