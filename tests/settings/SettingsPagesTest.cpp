#include "SettingsFixture.h"
#include "page/NoticeLine.h"
#include "page/SettingNews.h"
#include "settings/SetBandWidthLimitDlg.h"
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

bool AllMarked(const QWidget& page, PropertyMark mark) {
    const std::vector<Place> rows = Rows(page);
    return std::all_of(rows.begin(), rows.end(), [mark](const Place& row) { return (*row).mark == mark; });
}

PropertyMark MarkOf(const QWidget& page, const QString& key) {
    return (*FindRow(page, key)).mark;
}

} // namespace

class SettingsPagesTest : public QObject {
    Q_OBJECT

private slots:
    void valuesAreReadWhenThePageIsShown() {
        SettingsFixture fixture;
        fixture.service->SetSetting("DeleteCacheAfterUpload", "FALSE");
        fixture.service->SetSetting("KeepCompletedTaskInDB", "1");
        fixture.service->SetSetting("UploadWorkerCount", "8 of them");
        CTaskItemSettings page(fixture.console);
        page.EnsureCreated();
        QVERIFY(!fixture.reader.Work(Lane::Service));
        page.Activate();
        QVERIFY((*FindRow(page, u"UploadWorkerCount"_s)).readOnly);
        QVERIFY(AllMarked(page, PropertyMark::Reading));
        QCOMPARE(fixture.reader.StepAll(), 13);
        QVERIFY(!(*FindRow(page, u"UploadWorkerCount"_s)).readOnly);
        QVERIFY(AllMarked(page, PropertyMark::None));
        QCOMPARE(Value(page, u"DeleteCacheAfterUpload"_s), u"False"_s);
        QCOMPARE(Value(page, u"KeepCompletedTaskInDB"_s), u"False"_s);
        QCOMPARE(Value(page, u"UploadWorkerCount"_s), u"8"_s);
        QCOMPARE(Value(page, u"FailedTaskRetryTimeout"_s), u"120"_s);
        QCOMPARE(ShownNotice(page), QString());
        QCOMPARE(fixture.frame.toolbarOwner, &page);
        QVERIFY(fixture.frame.toolbar.empty());
    }

    void defaultsStandWhileTheServiceIsDown() {
        SettingsFixture fixture;
        fixture.service->SetSetting("UploadBandwidth", "50");
        fixture.service->Stop();
        CTaskItemSettings tasks(fixture.console);
        CSettingsMgr all(fixture.console);
        for (CBrenPanel* page : std::initializer_list<CBrenPanel*>{&tasks, &all}) {
            fixture.Open(*page);
            QVERIFY(AllMarked(*page, PropertyMark::NotRead));
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

        fixture.service->Start();
        fixture.Refresh(tasks);
        QCOMPARE(Value(tasks, u"UploadBandwidth"_s), u"50"_s);
        QVERIFY(AllMarked(tasks, PropertyMark::None));
        QCOMPARE(ShownNotice(tasks), QString());
    }

    void aReadStopsWhenTheServiceDoes() {
        SettingsFixture fixture;
        fixture.service->SetSetting("EnableTaskVerification", "true");
        fixture.service->SetSetting("DownloadBandwidth", "70");
        fixture.service->SetFault(devservice::HttpFault::GarbageHeaders, {}, "UploadWorkerCount");
        CTaskItemSettings page(fixture.console);
        fixture.Open(page);
        QCOMPARE(fixture.service.RequestLines().size(), 8);
        QCOMPARE(fixture.service.RequestLines().last(), u"GET /settings/UploadWorkerCount"_s);
        QCOMPARE(Value(page, u"EnableTaskVerification"_s), u"True"_s);
        QCOMPARE(MarkOf(page, u"EnableTaskVerification"_s), PropertyMark::None);
        QCOMPARE(Value(page, u"DownloadBandwidth"_s), u"0"_s);
        QCOMPARE(MarkOf(page, u"DownloadBandwidth"_s), PropertyMark::NotRead);
        QVERIFY(ShownNotice(page).contains(u"defaults"));
    }

    void oneSettingsTroubleIsItsOwn_data() {
        const Columns<QString, PropertyMark> row("fault", "mark");
        row("status:404@UploadBandwidth", PropertyMark::None);
        row("status:403@UploadBandwidth", PropertyMark::None);
        row("status:500@UploadBandwidth", PropertyMark::NotRead);
        row("fin@UploadBandwidth", PropertyMark::NotRead);
    }

    void oneSettingsTroubleIsItsOwn() {
        const auto [fault, mark] = Fetched<QString, PropertyMark>();
        SettingsFixture fixture;
        fixture.service->SetSetting("UploadBandwidth", "500");
        fixture.service->SetSetting("DownloadBandwidth", "70");
        QVERIFY(fixture.service->SetFault(fault.toStdString()));
        CTaskItemSettings page(fixture.console);
        fixture.Open(page);
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"0"_s);
        QCOMPARE(MarkOf(page, u"UploadBandwidth"_s), mark);
        QCOMPARE(Value(page, u"DownloadBandwidth"_s), u"70"_s);
        QCOMPARE(ShownNotice(page).contains(u"could not tell all"), mark == PropertyMark::NotRead);
        fixture.service->ClearFaults();
        QVERIFY2(Edit(page, u"UploadBandwidth"_s, u"50"_s), "what is not read can be changed");
        fixture.reader.StepAll();
        QCOMPARE(fixture.Stored(u"UploadBandwidth"_s), u"50"_s);
        QCOMPARE(fixture.Written().size(), 1);
    }

    void whatIsNotSavedSaysSoUntilItIs() {
        SettingsFixture fixture;
        fixture.service->SetSetting("UploadBandwidth", "50");
        CTaskItemSettings page(fixture.console);
        fixture.Open(page);
        const QString help = fixture.frame.StatusText();
        fixture.service->SetAnswer("/settings/UploadBandwidth?", devservice::Answer{500, {}});
        QVERIFY(Edit(page, u"UploadBandwidth"_s, u"60"_s));
        fixture.reader.StepAll();
        QCOMPARE(MarkOf(page, u"UploadBandwidth"_s), PropertyMark::NotSaved);
        QVERIFY(fixture.frame.StatusText().contains(u"not saved"));
        fixture.Refresh(page);
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"60"_s);
        QCOMPARE(MarkOf(page, u"UploadBandwidth"_s), PropertyMark::NotSaved);

        fixture.service->SetAnswer("/settings/UploadBandwidth?", {});
        QVERIFY2(Edit(page, u"UploadBandwidth"_s, u"60"_s), "Enter on the same text tries again");
        fixture.reader.StepAll();
        QCOMPARE(MarkOf(page, u"UploadBandwidth"_s), PropertyMark::None);
        QCOMPARE(fixture.frame.StatusText(), help);
        QCOMPARE(fixture.Stored(u"UploadBandwidth"_s), u"60"_s);
    }

    void aFailedReadKeepsWhatWasRead() {
        SettingsFixture fixture;
        fixture.service->SetSetting("UploadBandwidth", "50");
        CTaskItemSettings page(fixture.console);
        fixture.Open(page);
        fixture.service->Stop();
        fixture.Refresh(page);
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"50"_s);
        QVERIFY(AllMarked(page, PropertyMark::None));
    }

    void whatIsWrittenElsewhereIsReadAgain() {
        SettingsFixture fixture;
        CTaskItemSettings tasks(fixture.console);
        CSettingsMgr hidden(fixture.console);
        fixture.Open(tasks);
        CSetBandWidthLimitDlg dialog(fixture.client, fixture.reader, &tasks);
        dialog.setAttribute(Qt::WA_DeleteOnClose, false);
        connect(&dialog, &CBrenDialog::Written, &tasks,
                [&](const QString& setting) { emit fixture.settingNews.Written(setting, &dialog); });
        dialog.show();
        fixture.reader.StepAll();
        fixture.service->ForgetRequests();
        QTest::keyClicks(dialog.focusWidget(), u"75"_s);
        QTest::keyClick(dialog.focusWidget(), Qt::Key_Return);
        fixture.reader.StepAll();
        QCOMPARE(fixture.Written(), QStringList{u"PUT /settings/UploadBandwidth?ValueType=1&Value=75"_s});
        QCOMPARE(Value(tasks, u"UploadBandwidth"_s), u"75"_s);
        QCOMPARE(fixture.service.RequestLines().size(), 1 + 13); // the page that is shown, no other
    }

    void aCommandOvertakesTheRestOfARead() {
        SettingsFixture fixture;
        CTaskItemSettings page(fixture.console);
        page.Activate();
        QVERIFY(fixture.reader.Step(Lane::Service));
        PageLoader other(fixture.reader, page);
        other.Command(
            Lane::Service, [](std::stop_token stop) { return ServiceClient().StartTaskNow(u"T"_s, stop); },
            [](const Loaded<ServiceAnswer>&) {});
        QVERIFY(fixture.reader.Step(Lane::Service));
        QCOMPARE(fixture.service.RequestLines().last(), u"GET /schedule/startnow?T"_s);
        fixture.reader.StepAll();
        QVERIFY(AllMarked(page, PropertyMark::None));
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
        row("too long", "WriterName", QString(70'000, u'y'), {}, "(none)");
    }

    void writesArriveAsTheyAre() {
        const auto [key, entered, request] = Fetched<QString, QString, QString>();
        SettingsFixture fixture;
        CSettingsMgr page(fixture.console);
        fixture.Open(page);
        QVERIFY(Edit(page, key, entered));
        fixture.reader.StepAll();
        QCOMPARE(fixture.Written(),
                 request.isEmpty() ? QStringList() : QStringList{u"PUT /settings/"_s + request});
        QTEST(fixture.Stored(key), "stored");
    }

    void strangeValuesSurviveAnUnrelatedEdit() {
        SettingsFixture fixture;
        const QString strange =
            u"<a href=\"x\">&amp;</a>\r\n\"'\x01\x1B\u202Eabc\u200F\tend "_s + QString(64 * 1024, u'y');
        fixture.service->SetSetting("WriterName", strange.toStdString());
        CSettingsMgr page(fixture.console);
        page.resize(760, 500);
        fixture.Open(page);
        QCOMPARE(Value(page, u"WriterName"_s), strange);
        QVERIFY(!page.grab().isNull());
        QVERIFY(Edit(page, u"ComputerName"_s, u"box"_s));
        const Place row = FindRow(page, u"WriterName"_s);
        QVERIFY(row && row.group->OpenEditor(row.row));
        QTest::keyClick(row.group->Editor(), Qt::Key_Return);
        QCoreApplication::processEvents();
        fixture.reader.StepAll();
        QCOMPARE(fixture.Written(), QStringList{u"PUT /settings/ComputerName?ValueType=2&Value=box"_s});
        QCOMPARE(fixture.Stored(u"WriterName"_s), strange);
    }

    void anOlderReadDoesNotUndoAnEdit() {
        SettingsFixture fixture;
        fixture.service->SetSetting("UploadBandwidth", "5");
        CTaskItemSettings page(fixture.console);
        fixture.Open(page);
        page.Reload();
        QVERIFY(fixture.reader.Work(Lane::Service));
        QVERIFY(Edit(page, u"UploadBandwidth"_s, u"50"_s));
        fixture.reader.Finish();
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"50"_s);
        fixture.reader.StepAll();
        QCOMPARE(Value(page, u"UploadBandwidth"_s), u"50"_s);
        QCOMPARE(fixture.Stored(u"UploadBandwidth"_s), u"50"_s);
    }

    void aSettingMarkedForARestartSaysSo() {
        const QString words = u"Settings will take effect when the application starts next time."_s;
        SettingsFixture fixture;
        CSettingsMgr page(fixture.console);
        fixture.Open(page);
        QCOMPARE((*FindRow(page, u"BSInitConfig"_s)).hint, words);
        QCOMPARE((*FindRow(page, u"UploadBandwidth"_s)).hint, QString());
        QVERIFY(Edit(page, u"UploadBandwidth"_s, u"50"_s));
        QCOMPARE(ShownNotice(page), QString());
        QVERIFY(Edit(page, u"BSInitConfig"_s, u"True"_s));
        fixture.reader.StepAll();
        QCOMPARE(ShownNotice(page), words);
    }

    void aBrokenCatalogShowsAnEmptyPage() {
        SettingsFixture fixture;
        CSettingsMgr page(fixture.console, "/no/such/catalog.xml");
        fixture.Open(page);
        QVERIFY(Rows(page).empty());
        QVERIFY(ShownNotice(page).contains(u"/no/such/catalog.xml"_s));
        QCOMPARE(fixture.service.RequestLines(), QStringList());
        QCOMPARE(fixture.frame.StatusText(), u"There are no settings to show."_s);
    }

    void theSectionHoldsItsPages() {
        SettingsFixture fixture;
        CSettingsPanel panel(fixture.console);
        fixture.Open(panel);
        QStringList actions;
        for (const FrameAction& action : fixture.frame.sideActions)
            actions << action.caption;
        QCOMPARE(actions, (QStringList{u"Proxy Setup"_s, u"Refresh..."_s}));
        QCOMPARE(panel.PageCount(), 3);

        fixture.service->SetSetting("WriterName", "Ann");
        panel.SelectPage(1);
        fixture.reader.StepAll();
        QCOMPARE(Value(*panel.CurrentPage(), u"WriterName"_s), u"Ann"_s);
        fixture.service->SetSetting("WriterName", "Ben");
        fixture.Refresh(panel);
        QCOMPARE(Value(*panel.CurrentPage(), u"WriterName"_s), u"Ben"_s);
    }
};

BTASK_TEST(SettingsPagesTest);
#include "SettingsPagesTest.moc"
