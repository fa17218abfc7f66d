#include "service/DavListing.h"

#include "service/RequestText.h"
#include "support/NaiveListing.h"
#include "support/TestMain.h"

#include <random>

using namespace Qt::Literals::StringLiterals;

namespace {

const QByteArray Modified = "<D:getlastmodified>T</D:getlastmodified>";
const QByteArray Folder = "<D:iscollection>1</D:iscollection>";
const QByteArray File = "<D:iscollection>0</D:iscollection>";

QByteArray Named(const QByteArray& name) {
    return "<D:displayname>" + name + "</D:displayname>";
}

QByteArray Element(const QByteArray& href, const QByteArray& properties) {
    return "<D:response><D:href>" + href + "</D:href>" + properties + "</D:response>";
}

QByteArray Whole(const QByteArray& elements) {
    return "<?xml version=\"1.0\"?><D:multistatus xmlns:D=\"DAV:\">" + elements + "</D:multistatus>";
}

/// As in "/Docs (/home/Docs, T)"; folders begin with a slash.
QString Told(const DavListing& listing) {
    QStringList told;
    for (const DavEntry& entry : listing.entries)
        told +=
            u"%1%2 (%3, %4)"_s.arg(entry.isFolder ? u"/"_s : QString(), entry.name,
                                   QString::fromLatin1(entry.href), QString::fromLatin1(entry.lastModified));
    return told.join(u"; "_s);
}

/// Whether both scanners read the same; the answer is told when they do not.
bool AgreeOn(const QByteArray& answer) {
    const QString path = answer.size() % 2 ? u"/home/Docs"_s : QString();
    for (const HiddenEntries hidden : {HiddenEntries::LeaveOut, HiddenEntries::Show})
        if (ParseMultistatus(answer, path, hidden) != NaiveListing(answer, path, hidden)) {
            qWarning() << "read differently:" << answer.toPercentEncoding();
            return false;
        }
    return true;
}

} // namespace

class DavListingTest : public QObject {
    Q_OBJECT

private slots:
    void reads_data() {
        const Columns<QByteArray, QString, QString> row("answer", "path", "told");
        const QByteArray whole = Named("a") + Folder + Modified;
        const QByteArray one = Element("/h/a", whole);
        const QString read = u"/a (/h/a, T)"_s;
        row("prefix of one letter", Whole(one), {}, read);
        row("no prefix", Whole(one).replace("D:", ""), {}, read);
        row("no root", Whole(one).replace("D:", "").replace("multistatus", "list"), {}, read);
        row("root mark at the front", ":multistatus>" + QByteArray(one).replace("D:", ""), {}, read);
        row("longer prefix", Whole(one).replace("D:", "lp1:"), {}, {});
        row("last letter of a longer prefix", Whole(one).replace("D:multi", "xD:multi"), {}, read);
        row("zero octets", Whole(one).replace("<", QByteArray("\0<", 2)), {}, u"/a  (/h/a , T )"_s);
        row("no answer", {}, {}, {});

        row("hidden", Whole(Element("/h/b", "<a:mesffolder>1</a:mesffolder>" + whole) + one), {}, read);
        row("not hidden", Whole(Element("/h/a", "<a:mesffolder>0</a:mesffolder>" + whole)), {}, read);
        row("a later one's mark hides", Whole(one + Element("/h/b", "<a:mesffolder>1</a:mesffolder>")), {},
            {});

        row("href is decoded once", Whole(Element("/%2541&amp;amp;%zz%4", whole)), {},
            "/a (/%41&amp;%zz%4, T)");
        row("escaped markup", Whole(Element("/%26lt;", whole)), {}, "/a (/<, T)");
        row("long href", Whole(Element(QByteArray(70'000, 'h'), whole)), {},
            u"/a ("_s + QString(1038, u'h') + u", T)"_s);
        row("no href", Whole("<D:response>" + whole + "</D:response>"), {}, {});
        row("a later element's href",
            Whole("<D:response>" + whole + "</D:response>" + Element("/h/b", whole)), {},
            "/a (/h/b, T); /a (/h/b, T)");

        row("name is raw", Whole(Element("/h", Named("a&amp;b%20") + Folder + Modified)), {},
            "/a&amp;b%20 (/h, T)");
        row("name of the href", Whole(Element("/h/%C3%A4%20b", File + Modified)), {},
            u"ä b (/h/\u00c3\u00a4 b, T)"_s);
        row("href that ends in a slash", Whole(Element("/h/a/", Folder + Modified)), {}, {});
        row("the same with a name", Whole(Element("/h/a/", whole)), {}, "/a (/h/a/, T)");
        row("href without a slash", Whole(Element("a", Folder + Modified)), {}, {});
        row("malformed UTF-8", Whole(Element("/h", Named("a\xFF") + File + Modified)), {},
            u"a\uFFFD (/h, T)"_s);

        const QByteArray directory = "<D:getcontenttype>httpd/unix-directory</D:getcontenttype>";
        row("folder by its type", Whole(Element("/h/a", Named("a") + directory + Modified)), {}, read);
        row("file by its type",
            Whole(Element("/h/a", Named("a") + directory.toUpper().toLower().replace("dir", "x") + Modified)),
            {}, "a (/h/a, T)");
        row("flag before type", Whole(Element("/h/a", Named("a") + directory + File + Modified)), {},
            "a (/h/a, T)");
        row("flag as a number",
            Whole(Element("/h/a", Named("a") + "<iscollection> \t-007x</iscollection>" + Modified)), {},
            read);
        row("neither", Whole(Element("/h/a", Named("a") + Modified)), {}, {});

        row("no time", Whole(Element("/h/a", Named("a") + Folder)), {}, {});
        row("time without an end", Whole(Element("/h/b", Named("b") + Folder + "<getlastmodified>x") + one),
            {}, u"/b (/h/b, x); /a (/h/a, T)"_s);
        row("time that is cut off",
            Whole(Element("/h/b", Named("b") + Folder + "<getlastmodified>response>") + one), {}, read);
        row("element without an end", Whole(one + one).chopped(40), {}, read);

        const QByteArray three = Whole(Element("/h/docs", Named("docs") + Folder + Modified) +
                                       Element("/r", Named("Resources") + Folder + Modified) + one);
        row("itself and the root", three, u"/h/Docs"_s, read);
        row("the root has no name", three, {}, u"/docs (/h/docs, T); "_s + read);
        row("no path", three, u"Docs"_s, u"/docs (/h/docs, T); "_s + read);
    }
    void reads() {
        const auto [answer, path, told] = Fetched<QByteArray, QString, QString>();
        QCOMPARE(Told(ParseMultistatus(answer, path)), told);
        QVERIFY(ParseMultistatus(answer, path) == NaiveListing(answer, path, HiddenEntries::LeaveOut));
        for (qsizetype cut = 0; cut < std::min<qsizetype>(answer.size(), 2'000); ++cut)
            QVERIFY(AgreeOn(answer.first(cut)));
    }

    void showsHiddenEntriesOnDemand() {
        const QByteArray answer =
            Whole(Element("/h/a", "<a:mesffolder>1</a:mesffolder>" + Named("a") + Folder + Modified));
        QCOMPARE(Told(ParseMultistatus(answer, {}, HiddenEntries::Show)), u"/a (/h/a, T)"_s);
    }

    void readsWhatTheRulesSay() {
        std::mt19937 random(2'026);
        const auto below = [&random](qsizetype bound) { return qsizetype(random() % std::size_t(bound)); };
        for (int number = 0; number < 100'000; ++number) {
            QByteArray choices(1 + below(12), '\0');
            for (char& choice : choices)
                choice = char(random());
            QByteArray answer =
                below(4) ? "<D:multistatus>" + ComposeListing(choices) : ComposeListing(choices);
            for (qsizetype change = below(4); change > 0 && !answer.isEmpty(); --change)
                answer[below(answer.size())] = "<>:Dh/1%\0&;r"[below(12)];
            if (below(4) == 0)
                answer.truncate(below(answer.size() + 1));
            QVERIFY(AgreeOn(answer));
        }
    }

    // Searches that began anew at each element would not end in this test's time, or take gigabytes.
    void costsNoMoreThanItsLength_data() {
        const Columns<QByteArray, qsizetype> row("answer", "count");
        const QByteArray noName = "<response><getlastmodified>T</x></response>";
        const QByteArray far = "href>/a<displayname>" + QByteArray(1'000'000, 'n') + "<iscollection>" +
                               QByteArray(1'000'000, '0') + "1<";
        row("nothing is there", QByteArray("<response>").repeated(1'000'000), qsizetype(0));
        row("only names of properties",
            QByteArray("<response href displayname iscollection getlastmodified").repeated(200'000),
            qsizetype(0));
        row("all lack what a far one has", noName.repeated(20'000) + far, qsizetype(20'000));
        row("a million deep", QByteArray("<D:multistatus>").repeated(1'000'000), qsizetype(0));
    }
    void costsNoMoreThanItsLength() {
        const auto [answer, count] = Fetched<QByteArray, qsizetype>();
        const DavListing listing = ParseMultistatus(answer, {});
        QCOMPARE(qsizetype(listing.entries.size()), count);
        if (count > 0)
            QCOMPARE(listing.entries.back().name.constData(), listing.entries.front().name.constData());
    }

    void refusesToDelete_data() {
        const Columns<QString, bool> row("path", "refused");
        for (const char* refused :
             {"", "/", "/home", "//home", "/home/", "/home/a/..", "/home/%41", "/home/a?b"})
            row(refused, true);
        for (const char* taken : {"/home/a", "/home/50% off/ä #1"})
            row(taken, false);
    }
    void refusesToDelete() {
        const auto [path, refused] = Fetched<QString, bool>();
        QCOMPARE(!DeletedPathRefusal(path).isEmpty(), refused);
    }
};

BTASK_TEST(DavListingTest);
#include "DavListingTest.moc"
