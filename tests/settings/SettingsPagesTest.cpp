#include "SettingsBench.h"
#include "page/NoticeLine.h"
#include "settings/SettingsMgr.h"
#include "settings/SettingsPanel.h"
#include "settings/TaskItemSettings.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

namespace {

QString ShownNotice(const QWidget& page) {
    QStringList shown;
    for (const NoticeLine* notice : page.findChildren<NoticeLine*>())
        if (notice->isVisible())
            shown << notice->Text();
    return shown.join(u'|');
}

QString Describe(const PropertyRow& row) {
    return u"%1|%2|%3|%4"_s.arg(row.key, row.label).arg(static_cast<int>(row.type)).arg(row.value);
}

bool AllReadOnly(const QWidget& page, bool readOnly) {
    const std::vector<Place> rows = Rows(page);
    return std::all_of(rows.begin(), rows.end(),
                       [readOnly](const Place& row) { return (*row).readOnly == readOnly; });
}

} // namespace

class SettingsPagesTest : public QObject {
    Q_OBJECT

private slots:
    void valuesAreReadWhenThePageIsShown() {
        SettingsBench bench;
        bench.service->SetSetting("DeleteCacheAfterUpload", "FALSE");
        bench.service->SetSetting("KeepCompletedTaskInDB", "1");
        bench.service->SetSetting("UploadWorkerCount", "8 of them");
        CTaskItemSettings page(bench.console);
        page.EnsureCreated();
        QVERIFY(AllReadOnly(page, true));
        QVERIFY(!bench.reader.Work(Lane::Service));
        page.Activate();
        QVERIFY(AllReadOnly(page, true));
        QCOMPARE(bench.reader.StepAll(), 1);
        QVERIFY(AllReadOnly(page, false));
        QCOMPARE(Value(page, u"DeleteCacheAfterUpload"_s), u"False"_s);
        QCOMPARE(Value(page, u"KeepCompletedTaskInDB"_s), u"False"_s);
        QCOMPARE(Value(page, u"UploadWorkerCount"_s), u"8"_s);
        QCOMPARE(Value(page, u"FailedTaskRetryTimeout"_s), u"120"_s);
        QCOMPARE(ShownNotice(page), QString());
        QCOMPARE(bench.frame.toolbarOwner, &page);
        QVERIFY(bench.frame.toolbar.empty());
    }

    void defaultsStandWhileTheServiceIsDown() {
        SettingsBench bench;
        bench.service->SetSetting("UploadBandwidth", "50");
        bench.service->Stop();
        CTaskItemSettings tasks(bench.console);
        CSettingsMgr all(bench.console);
        for (CBrenPanel* page : std::initializer_list<CBrenPanel*>{&tasks, &all}) {
            bench.Open(*page);
            QVERIFY(AllReadOnly(*page, true));
            QVERIFY(ShownNotice(*page).contains(u"defaults"));
        }
        // What is built in and what is shipped must agree on every setting that both know.
        QCOMPARE(Rows(tasks).size(), std::size_t(13));
        for (const Place& row : Rows(tasks)) {
            const Place shipped = FindRow(all, (*row).key);
            QVERIFY2(shipped, qPrintable((*row).key));
            QCOMPARE(Describe(*row), Describe(*shipped));
            QVERIFY(!(*row).value.isEmpty());
        }

        bench.service->Start();
        bench.Refresh(tasks);
        QCOMPARE(Value(tasks, u"UploadBandwidth"_s), u"50"_s);
        QVERIFY(AllReadOnly(tasks, false));
        QCOMPARE(ShownNotice(tasks), QString());
    }

    void aReadStopsWhenTheServiceDoes() {
        SettingsBench bench;
        bench.service->SetSetting("EnableTaskVerification", "true");
        bench.service->SetSetting("DownloadBandwidth", "70");
        bench.service->SetFault(devservice::HttpFault::GarbageHeaders, {}, "UploadWorkerCount");
        CTaskItemSettings page(bench.console);
        bench.Open(page);
        QCOMPARE(bench.service.RequestLines().size(), 8);
        QCOMPARE(bench.service.RequestLines().last(), u"GET /settings/UploadWorkerCount"_s);
        QCOMPARE(Value(page, u"EnableTaskVerification"_s), u"True"_s);
        QVERIFY(!(*FindRow(page, u"EnableTaskVerification"_s)).readOnly);
        QCOMPARE(Value(page, u"DownloadBandwidth"_s), u"0"_s);
        QVERIFY((*FindRow(page, u"DownloadBandwidth"_s)).readOnly);
        QVERIFY(ShownNotice(page).contains(u"defaults"));
    }

    void aFailedReadKeepsWhatWasRead() {
        SettingsBench bench;
        bench.service->SetSetting("UploadBandwidth", "50");
        CTaskItemSettings page(bench.console);
        bench.Open(page);
        bench.service->Stop();
        bench.Refresh(page);
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"50"_s);
        QVERIFY(AllReadOnly(page, false));
        QVERIFY(Edit(page, u"UploadBandwidth"_s, u"60"_s));
        bench.reader.StepAll();
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"60"_s);
    }

    void writesArriveAsTheyAre_data() {
        const Columns<QString, QString, QString, QString> row("key", "entered", "request", "stored");
        row("integer", "UploadBandwidth", "50", "UploadBandwidth?ValueType=1&Value=50", "50");
        row("negative", "DropCTMin", "-1", "DropCTMin?ValueType=1&Value=-1", "-1");
        row("boolean", "SuccNotification", "True", "SuccNotification?ValueType=4&Value=True", "True");
        row("text", "WriterName", "Ann", "WriterName?ValueType=2&Value=Ann", "Ann");
        row("emptied", "WriterName", {}, "WriterName?ValueType=2&Value=", {});
        row("encoded octets", "WriterName", "Ä <b>\n#", "WriterName?ValueType=2&Value=%C3%84%20%3Cb%3E%0A%23",
            "Ä <b>\n#");
        row("sent as it stands", "WriterName", "a&b+c%41", "WriterName?ValueType=2&Value=a&b+c%41", "a");
        row("unchanged", "WriterName", "LOCAL USER", {}, "(none)");
        row("no integer", "UploadBandwidth", "fast", {}, "(none)");
    }

    void writesArriveAsTheyAre() {
        const auto [key, entered, request] = Fetched<QString, QString, QString>();
        SettingsBench bench;
        CSettingsMgr page(bench.console);
        bench.Open(page);
        QVERIFY(Edit(page, key, entered));
        bench.reader.StepAll();
        QCOMPARE(bench.Written(),
                 request.isEmpty() ? QStringList() : QStringList{u"PUT /settings/"_s + request});
        QTEST(bench.Stored(key), "stored");
    }

    void strangeValuesSurviveAnUnrelatedEdit() {
        SettingsBench bench;
        const QString strange =
            u"<a href=\"x\">&amp;</a>\r\n\"'\x01\x1B\u202Eabc\u200F\tend "_s + QString(64 * 1024, u'y');
        bench.service->SetSetting("WriterName", strange.toStdString());
        CSettingsMgr page(bench.console);
        page.resize(760, 500);
        bench.Open(page);
        QCOMPARE(Value(page, u"WriterName"_s), strange);
        QVERIFY(!page.grab().isNull());
        QVERIFY(Edit(page, u"ComputerName"_s, u"box"_s));
        const Place row = FindRow(page, u"WriterName"_s);
        QVERIFY(row && row.group->OpenEditor(row.row));
        QTest::keyClick(row.group->Editor(), Qt::Key_Return);
        QCoreApplication::processEvents();
        bench.reader.StepAll();
        QCOMPARE(bench.Written(), QStringList{u"PUT /settings/ComputerName?ValueType=2&Value=box"_s});
        QCOMPARE(bench.Stored(u"WriterName"_s), strange);
    }

    void anOlderReadDoesNotUndoAnEdit() {
        SettingsBench bench;
        bench.service->SetSetting("UploadBandwidth", "5");
        CTaskItemSettings page(bench.console);
        bench.Open(page);
        page.Reload();
        QVERIFY(bench.reader.Work(Lane::Service));
        QVERIFY(Edit(page, u"UploadBandwidth"_s, u"50"_s));
        bench.reader.Finish();
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"50"_s);
        bench.reader.StepAll();
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"50"_s);
        QCOMPARE(bench.Stored(u"UploadBandwidth"_s), u"50"_s);
    }

    void aSettingMarkedForARestartSaysSo() {
        const QString words = u"Settings will take effect when the application starts next time."_s;
        SettingsBench bench;
        CSettingsMgr page(bench.console);
        bench.Open(page);
        QCOMPARE((*FindRow(page, u"BSInitConfig"_s)).hint, words);
        QCOMPARE((*FindRow(page, u"UploadBandwidth"_s)).hint, QString());
        QVERIFY(Edit(page, u"UploadBandwidth"_s, u"50"_s));
        QCOMPARE(ShownNotice(page), QString());
        QVERIFY(Edit(page, u"BSInitConfig"_s, u"True"_s));
        QCOMPARE(ShownNotice(page), words);
    }

    void aBrokenCatalogShowsAnEmptyPage() {
        SettingsBench bench;
        CSettingsMgr page(bench.console, "/no/such/catalog.xml");
        bench.Open(page);
        QVERIFY(Rows(page).empty());
        QCOMPARE(ShownNotice(page), QString());
        QCOMPARE(bench.service.RequestLines(), QStringList());
        QCOMPARE(bench.frame.StatusText(), u"There are no settings to show."_s);
    }

    void theSectionHoldsBothPages() {
        SettingsBench bench;
        CSettingsPanel panel(bench.console);
        bench.Open(panel);
        QStringList actions;
        for (const FrameAction& action : bench.frame.sideActions)
            actions << action.caption;
        QCOMPARE(actions, (QStringList{u"Proxy Setup"_s, u"Refresh..."_s}));
        QCOMPARE(panel.PageCount(), 2);

        bench.service->SetSetting("WriterName", "Ann");
        panel.SelectPage(1);
        bench.reader.StepAll();
        QCOMPARE(Value(*panel.CurrentPage(), u"WriterName"_s), u"Ann"_s);
        bench.service->SetSetting("WriterName", "Ben");
        bench.Refresh(panel);
        QCOMPARE(Value(*panel.CurrentPage(), u"WriterName"_s), u"Ben"_s);
    }
};

BTASK_TEST(SettingsPagesTest);
#include "SettingsPagesTest.moc"
