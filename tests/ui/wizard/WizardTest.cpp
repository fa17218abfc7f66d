#include "page/UserPrompts.h"
#include "support/ScriptedPrompts.h"
#include "support/TestMain.h"
#include "support/WizardRider.h"

#include <QFormLayout>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Draft {
    QString host;
    QString name;
};

/// The service behind the wizard: what it was sent, and what it refuses.
struct Service {
    QStringList sent;
    QString refuses;
};

/// Fields of one line with their labels.
class FieldPage : public WizardPage {
public:
    FieldPage(const QString& title, const QStringList& labels) : WizardPage(title, {}) {
        auto* form = new QFormLayout(this);
        for (const QString& label : labels) {
            fields.push_back(new QLineEdit);
            form->addRow(label, fields.back());
            connect(fields.back(), &QLineEdit::textChanged, this, &WizardPage::Edited);
        }
    }

    std::vector<QLineEdit*> fields;
};

class LoginPage : public FieldPage {
public:
    explicit LoginPage(Draft& draft) : FieldPage(u"Login"_s, {u"Host"_s, u"Password"_s}), m_draft(draft) {}

    bool IsComplete() const override { return !fields[0]->text().isEmpty(); }
    void Leave() override {
        if (fields[1]->text().isEmpty())
            return Sheet().Stay({u"Password?"_s, fields[1], true});
        const QString host = fields[0]->text();
        Sheet().Check(
            Lane::Service, u"Asking..."_s, [host](std::stop_token) { return host != u"bad"_s; },
            [this, host](const Loaded<bool>& good) {
                if (!*good)
                    return Sheet().Stay({u"Wrong host."_s, fields[0]});
                m_draft.host = host;
                Sheet().Pass();
            });
    }

private:
    Draft& m_draft;
};

class NamePage : public FieldPage {
public:
    NamePage(Draft& draft, Service& service)
        : FieldPage(u"Name"_s, {u"Name"_s}), m_draft(draft), m_service(service) {
        connect(fields[0], &QLineEdit::textEdited, this, [this](const QString& text) {
            if (text.startsWith(u'@'))
                m_draft.host = text.mid(1);
        });
    }

    QVariantList Inputs() const override { return {m_draft.host}; }
    void Fill() override {
        Sheet().Read(
            *this, Lane::Service, u"Reading names..."_s,
            [host = m_draft.host, &service = m_service](std::stop_token) {
                return service.refuses == host ? std::nullopt : std::optional(host.toUpper());
            },
            [this](const Loaded<QString>& loaded) {
                if (!loaded)
                    return u"No names."_s;
                fields[0]->setText(*loaded);
                return QString();
            });
    }
    PageLine Line() const override { return {u"Chosen:"_s, fields[0]->text()}; }
    void Leave() override {
        m_draft.name = fields[0]->text();
        Sheet().Pass();
    }

private:
    Draft& m_draft;
    Service& m_service;
};

class ConfirmPage : public FieldPage {
public:
    ConfirmPage(Draft& draft, Service& service)
        : FieldPage(u"Confirm"_s, {u"Task"_s}), m_draft(draft), m_service(service),
          m_notes(new QPlainTextEdit) {
        m_notes->setAccessibleName(u"Notes"_s);
        layout()->addWidget(m_notes);
    }

    void Leave() override {
        std::vector<WizardRequest> requests;
        for (const QString& what : {u"card "_s + m_draft.host, u"node "_s + fields[0]->text()})
            requests.push_back(
                {u"Sending "_s + what, what.toUtf8(), [what, &service = m_service](std::stop_token) {
                     service.sent.append(what);
                     return service.refuses == what ? u"Refused."_s : QString();
                 }});
        Sheet().SendAll(Lane::Service, std::move(requests));
    }

private:
    Draft& m_draft;
    Service& m_service;
    QPlainTextEdit* m_notes;
};

} // namespace

class WizardTest : public QObject {
    Q_OBJECT

private slots:
    void travels_data() {
        const Columns<QString, QString, QString> row("steps", "where", "buttons");
        // Pages 0 to 3, of which 2 is left out: B begins, P passes, S stays, C commits, < goes back.
        row("", "0 Now ToCome LeftOut ToCome", "main cancel");
        row("P", "1 Done Now LeftOut ToCome", "back main cancel");
        row("BP", "1 Done Now LeftOut ToCome", "back main cancel");
        row("BPB", "1 Done Now LeftOut ToCome", "back cancel");
        row("BPB<", "0 Now ToCome LeftOut ToCome", "main cancel");
        row("BPBS", "1 Done Now LeftOut ToCome", "back main cancel");
        row("BPBP", "3 Done Done LeftOut Now", "back main cancel");
        row("BPBP<", "1 Done Now LeftOut ToCome", "back main cancel");
        row("BPBPBC", "3 Done Done LeftOut Now", "");
        row("BPBPBC<", "3 Done Done LeftOut Now", "");
        row("BPBPBCS", "3 Done Done LeftOut Now", "back main cancel");
        row("<", "0 Now ToCome LeftOut ToCome", "main cancel");
    }

    void travels() {
        const auto [steps] = Fetched<QString>();
        WizardTravel travel;
        for (int page = 0; page < 4; ++page)
            travel.Add();
        travel.LeaveOut(2, true);
        travel.LeaveOut(0, true); // the present one cannot be
        for (const QChar step : steps) {
            if (step == u'B') {
                QVERIFY(travel.Begin());
                QVERIFY(!travel.Begin());
            } else if (step == u'P') {
                QVERIFY(travel.Pass());
            } else if (step == u'C') {
                travel.Commit();
            } else if (step == u'S') {
                travel.Stay();
            } else {
                travel.Back();
            }
        }
        static const char* const marks[] = {"Done", "Now", "ToCome", "LeftOut"};
        QString where = QString::number(travel.Current());
        for (int page = 0; page < 4; ++page)
            where += u' ' + QLatin1String(marks[int(travel.MarkOf(page))]);
        QTEST(where, "where");
        const WizardTravel::Buttons allowed = travel.Allowed(true, false);
        QStringList buttons;
        for (const auto& [on, name] :
             {std::pair(allowed.back, "back"), {allowed.main, "main"}, {allowed.cancel, "cancel"}})
            if (on)
                buttons.append(QLatin1String(name));
        QTEST(buttons.join(u' '), "buttons");
    }

    void rides_data() {
        const Columns<QString, QString, QString> row("case", "script", "sent");
        const QString in = u"Host=a | Password=x | Next | step | "_s;
        row("Tab goes down the page and along the buttons",
            "focus Host | key Tab | focus Password | Host=a | key Tab | key Tab | focus Next | key Tab | "
            "focus Cancel | key Tab | focus Host",
            "");
        row("cancelled with nothing entered", "focus Host | key Escape | closed", "");
        row("incomplete", "off Next | key Return | page Login | Host=a | on Next", "");
        row("a refusal in a box, and its words after it",
            "Host=a | Next | says Password? | focus Password | Host==a | Password=x | says Password? | Next "
            "| busy",
            "");
        row("a refused check keeps what was typed",
            "Host=bad | Password=x | key Return | busy | work | answer | says Wrong host. | "
            "focus Host | Host==bad | Password==x | Host=good | key Return | says Asking... | step | page "
            "Name",
            "");
        row("an edit while it is checked",
            "Host=bad | Password=x | Next | busy | Host=bad2 | on Next | says  | steps | page Login | says ",
            "");
        row("a late answer of a check that was given up",
            "Host=a | Password=x | Next | work | Password=y | answer | page Login | on Next | Next | step | "
            "page Name",
            "");
        row("Cancel while it is checked stays",
            "Host=a | Password=x | Next | busy | key Escape | on Next | focus Next | steps | page Login", "");
        row("keys while it is checked",
            "Host=a | Password=x | Next | key Space | key Return | key Space | busy | steps | page Name", "");
        row("a page is read, and Next waits",
            in + u"page Name | busy | off Next | step | says Chosen: A | focus Name | on Next"_s, "");
        row("Back keeps all, and another input fills anew",
            in + u"step | Name=mine | Back | Host==a | Password==x | Next | step | page Name | Name==mine | "
                 u"says Chosen: mine | "
                 "Back | Host=b | Next | step | busy | step | Name==B"_s,
            "");
        row("Back while it is read; the answer still holds",
            in + u"work | Back | answer | page Login | Next | step | Name==A | on Next"_s, "");
        row("an answer for inputs that are past",
            in + u"work | Back | Host=b | Next | work | answer | answer | busy | step | Name==B"_s, "");
        row("an answer for inputs that the page itself has changed",
            in + u"work | Name=@b | answer | busy | step | Name==B | on Next"_s, "");
        row("a page that cannot be read is tried again",
            u"Host=down | Password=x | Next | step | step | says No names. | off Next | focus Name | key F5 | busy | step | says No names. | Back | Next | step | busy | step | says No names. | off Next"_s,
            "");
        row("Enter finishes once",
            in + u"step | Next | page Confirm | Task=t | key Return | busy | off Back | off Cancel | key "
                 u"Escape | "
                 "key Return | key Space | Cancel | steps | finished"_s,
            "card a, node t");
        row("Enter in a text of several lines",
            in +
                u"step | Next | Notes=n | key Return | page Confirm | on Finish | key Ctrl+Return | steps | finished"_s,
            "card a, node ");
        row("a refused request goes on where it stopped",
            in +
                u"step | Next | Task=no | Finish | steps | says Refused. | focus Finish | Task==no | Task=t | Finish | steps | finished"_s,
            "card a, node no, node t");
        row("another first request begins anew",
            in +
                u"step | Next | Task=no | Finish | steps | Back | Back | Password==x | Host=b | Next | steps | Next | Task=t | Finish | steps | finished"_s,
            "card a, node no, card b, node t");
    }

    void rides() {
        const auto [name, script] = Fetched<QString, QString>();
        ScriptedPrompts prompts;
        if (script.contains(u"says Password?"_s))
            prompts.ExpectMessage(u"Password?"_s);
        Service service;
        service.refuses = script.contains(u"down"_s) ? u"down"_s : u"node no"_s;
        SteppingReader reader;
        WizardRider rider(MakeSheet(reader, prompts, service), reader);
        QVERIFY(rider.Ride(script));
        QTEST(service.sent.join(u", "_s), "sent");
    }

    void cancelAsksOnlyWhenSomethingWasEntered() {
        ScriptedPrompts prompts;
        const QString question = u"Do you really want to discard what you have entered?"_s;
        prompts.ExpectQuestion(question, false);
        prompts.ExpectQuestion(question, true);
        Service service;
        SteppingReader reader;
        WizardRider rider(MakeSheet(reader, prompts, service), reader);
        QVERIFY(rider.Ride(u"Host=a | Cancel | page Login | Host==a"_s));
        QVERIFY(prompts.asked.destroys);
        prompts.Hold();
        QVERIFY(rider.Ride(u"Cancel | key Escape | page Login"_s)); // asks once
        prompts.Release();
        QVERIFY(rider.Ride(u"closed"_s));
    }

    void aDeadWizardHearsNoAnswer() {
        ScriptedPrompts prompts;
        Service service;
        SteppingReader reader;
        {
            WizardRider rider(MakeSheet(reader, prompts, service), reader);
            QVERIFY(rider.Ride(u"Host=a | Password=x | Next | step | work"_s));
        }
        reader.Finish();
        reader.StepAll();
    }

    void aHeldKeyAndADoubleClickPassOnePage() {
        ScriptedPrompts prompts;
        Service service;
        SteppingReader reader;
        auto* sheet = new CBrenPropertySheet(reader, prompts, u"Plain"_s);
        std::vector<WizardPage*> pages;
        for (const QString& title : {u"One"_s, u"Two"_s, u"Three"_s, u"Four"_s}) {
            pages.push_back(new WizardPage(title, {}));
            sheet->AddPage(pages.back());
        }
        sheet->LeaveOut(*pages[2], true);
        WizardRider rider(sheet, reader);
        QWidget* next = sheet->focusWidget();
        QVERIFY(rider.Ride(u"focus Next"_s));
        QTest::mouseClick(next, Qt::LeftButton);
        QTest::mouseDClick(next, Qt::LeftButton);
        QVERIFY(rider.Ride(u"page Two | on Next"_s));
        QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, {}, true);
        QCoreApplication::sendEvent(next, &held);
        QVERIFY(rider.Ride(u"page Two | key Return | page Four | Back | page Two"_s));
    }

private:
    CBrenPropertySheet* MakeSheet(SteppingReader& reader, ScriptedPrompts& prompts, Service& service) {
        m_draft = {};
        auto* sheet = new CBrenPropertySheet(reader, prompts, u"Sample"_s);
        sheet->AddPage(new LoginPage(m_draft));
        sheet->AddPage(new NamePage(m_draft, service));
        sheet->AddPage(new ConfirmPage(m_draft, service));
        return sheet;
    }

    Draft m_draft;
};

BTASK_TEST(WizardTest);
#include "WizardTest.moc"
