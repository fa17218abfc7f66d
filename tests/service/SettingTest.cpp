#include "service/KnownSettings.h"
#include "service/ListSetting.h"
#include "service/RequestText.h"
#include "support/ServiceFixture.h"
#include "support/TestMain.h"

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr ListSetting Folders{"Folders", 2};

QString Lines(const QStringList& entries) {
    return entries.join(u'|').replace(u'\t', u'>');
}

QStringList Entries(QString lines) {
    return lines.replace(u'>', u'\t').split(u'|', Qt::SkipEmptyParts);
}

} // namespace

class SettingTest : public QObject {
    Q_OBJECT

private slots:
    void readsTellWhatStands_data() {
        const Columns<QString, int, bool, bool> row("fault", "value", "wasRead", "silent");
        row("none", 70, true, false);
        row("status:404", 5, true, false);
        row("status:500", 5, false, false);
        row("fin", 5, false, false);
        row("garbage", 5, false, true);
        row("refuse", 5, false, true);
    }

    void readsTellWhatStands() {
        QFETCH(QString, fault);
        ServiceFixture service;
        service->SetSetting("UploadWorkerCount", "70");
        QVERIFY(service->SetFault(fault.toStdString()));
        const SettingValue<int> read = ReadSetting(ServiceClient(), Settings::UploadWorkerCount);
        QTEST(read.value, "value");
        QTEST(read.WasRead(), "wasRead");
        QTEST(read.silent, "silent");
    }

    void typesKeepTheirForm_data() {
        const Columns<ServiceClient::ValueType, QString, QString> row("type", "text", "typed");
        using Type = ServiceClient::ValueType;
        row("TRUE", Type::Boolean, "TRUE", "True");
        row("1 is not true", Type::Boolean, "1", "False");
        row("nothing is not true", Type::Boolean, "", "False");
        row("leading number", Type::Integer, " -12 KB", "-12");
        row("no number", Type::Integer, "many", "0");
        row("text", Type::String, " ä\nb", " ä\nb");
    }

    void typesKeepTheirForm() {
        const auto [type, text] = Fetched<ServiceClient::ValueType, QString>();
        QTEST(TypedText(text, type), "typed");
        ServiceFixture service;
        const TextSetting setting{u"Any"_s, type, {}};
        QVERIFY(WriteSetting(ServiceClient(), setting, text));
        QTEST(ReadSetting(ServiceClient(), setting).value, "typed");
    }

    void listsAreChangedAsTheyAreNow_data() {
        const Columns<QString, QString, QString, QString, QString> row("stored", "edit", "after", "failure",
                                                                       "fault");
        row("first of a list that is not set", {}, "add b>2", "b>2", {}, {});
        row("behind others", "a>1", "add b>2", "a>1|b>2", {}, {});
        row("empty lines go", "|a>1|||", "add b>2", "a>1|b>2", {}, {});
        row("removed ignoring case", "A>1|b>2|a>3", "remove a", "b>2", {}, {});
        row("a name is not its beginning", "ab>1", "remove a", "ab>1", {}, {});
        row("the last one", "a>1", "remove A", {}, {}, {});
        row("entries of others as they are", "no tab|a>1>x", "add b>2", "no tab|a>1>x|b>2", {}, {});
        row("given up", "a>1", "give up", "a>1", "Given up.", {});
        row("a tab too many", "a>1", "add b>2>3", "a>1", "neither tabs", {});
        row("a line feed", "a>1", "add b>2\nc>3", "a>1", "neither tabs", {});
        row("ampersand", "a>1", "add b>x&y", "a>1", "\"b x&y\": It holds \"&\"", {});
        row("one that stood there", "a>%41", "add b>2", "a>%41", "\"a %41\": It holds \"%\"", {});
        row("plus", "a>1", "add b>x+y", "a>1|b>x+y", {}, {});
        row("too long", "a>1", u"add b>"_s + QString(70'000, u'x'), "a>1", "too long", {});
        row("not read", "a>1", "add b>2", "a>1", "did not tell what it holds", "status:500");
        row("not taken", "a>1", "add b>2", "a>1", "did not take", "answer 500");
        row("taken and not stored", "a>1", "add b>2", "a>1", "another list", "answer 200");
        row("stored in spite of the answer", "a>1", "add b>2", "a>1|b>2", {}, "status:500@Folders?");
    }

    void listsAreChangedAsTheyAreNow() {
        const auto [stored, edit, after, failure, fault] =
            Fetched<QString, QString, QString, QString, QString>();
        ServiceFixture service;
        if (!stored.isEmpty())
            service->SetSetting("Folders",
                                QString(stored).replace(u'>', u'\t').replace(u'|', u'\n').toStdString());
        if (fault.startsWith(u"answer"))
            service->SetAnswer("/settings/Folders?", devservice::Answer{fault.section(u' ', 1).toInt(), {}});
        else if (!fault.isEmpty())
            QVERIFY(service->SetFault(fault.toStdString()));
        const QString entry = edit.section(u' ', 1).replace(u'>', u'\t');
        const ListChange change =
            ChangeList(ServiceClient(), Folders, [edit = edit, &entry](QStringList& entries) {
                if (edit.startsWith(u"add"))
                    entries.append(entry);
                else if (edit.startsWith(u"remove"))
                    entries.removeIf([&](const QString& each) { return IsNamed(each, entry); });
                return edit == u"give up" ? u"Given up."_s : QString();
            });
        QVERIFY2(change.failure.contains(failure), qPrintable(change.failure));
        QCOMPARE(change.stored, failure.isEmpty());
        if (change.entries)
            QCOMPARE(Lines(*change.entries), Lines(Entries(after)));
        service->ClearFaults();
        QCOMPARE(Lines(ReadList(ServiceClient(), Folders).value), Lines(Entries(after)));
    }

    void queriesTellWhatTheyLose_data() {
        const Columns<QString, QString, QString> row("text", "remarked", "refused");
        row("plain", "plain text #1 50% 100%x ~'\"<ä\n\u202E", {}, {});
        row("empty", {}, {}, {});
        row("ampersand", "a&b", "\"&\"", "\"&\"");
        row("plus", "+", "\"+\"", {});
        row("escape", "50%aF", "\"%\"", "\"%\"");
        row("half an escape", "%a", {}, {});
        row("zero", u"a"_s + QChar(u'\0'), "zero characters", "zero characters");
        row("all", u"&+%00"_s + QChar(u'\0'), "\"&\", \"+\", \"%\", zero characters",
            "\"&\", \"%\", zero characters");
    }

    void queriesTellWhatTheyLose() {
        const auto [text, remarked, refused] = Fetched<QString, QString, QString>();
        const QString remark = QueryRemark(text);
        QVERIFY2(remarked.isEmpty() ? remark.isEmpty() : remark.contains(u"reads "_s + remarked + u" in"_s),
                 qPrintable(remark));
        const QString refusal = QueryRefusal(text);
        QVERIFY2(refused.isEmpty() ? refusal.isEmpty() : refusal.contains(u"holds "_s + refused + u','),
                 qPrintable(refusal));
    }

    void pathsThatCannotBeChangedAreRefused_data() {
        const Columns<QString, bool> row("path", "refused");
        row("/Photos/a b.jpg", false);
        row("/Photos/100% & more+#", false);
        row("Photos/..a", false);
        row("nothing", "", true);
        row("/", true);
        row("/Photos/", true);
        row("/Photos/a?b", true);
        row("/Photos/%41/b", true);
        row("line feed", "/Photos/a\nb", true);
        row("/Photos/../b", true);
        row("/./b", true);
    }

    void pathsThatCannotBeChangedAreRefused() {
        QFETCH(QString, path);
        QTEST(!ChangedPathRefusal(path).isEmpty(), "refused");
    }

    void documentsAskAboutMarkup_data() {
        const Columns<QString, QString> row("value", "character");
        row("a > b \"c\"", {});
        row("a<b&c", "<");
        row("a&lt;", "&");
    }

    void documentsAskAboutMarkup() {
        const auto [value, character] = Fetched<QString, QString>();
        const QString question = DocumentQuestion(u"The user name"_s, value);
        QVERIFY2(character.isEmpty() ? question.isEmpty()
                                     : question.startsWith(u"The user name holds \"%1\""_s.arg(character)),
                 qPrintable(question));
    }

    void requestLinesEndAt64K() {
        const qsizetype rest = 64 * 1024 - QByteArray("PUT /settings/N?ValueType=2&Value= HTTP/1.1").size();
        QCOMPARE(LengthRefusal(u"N"_s, QString(rest, u'x')), QString());
        QVERIFY(!LengthRefusal(u"N"_s, QString(rest + 1, u'x')).isEmpty());
        QCOMPARE(LengthRefusal(u"N"_s, QString(rest / 6, u'ä')), QString());
        QVERIFY(!LengthRefusal(u"N"_s, QString(rest / 6 + 1, u'ä')).isEmpty());
    }
};

BTASK_TEST(SettingTest);
#include "SettingTest.moc"
