#include "clouddrive/SafePage.h"

#include "page/Console.h"
#include "page/PasswordField.h"
#include "wizard/Form.h"

#include <QLabel>
#include <QLineEdit>
#include <QScrollArea>
#include <QStackedWidget>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr qsizetype LongestLabel = 60;

QString TextOf(const QWidget& field) {
    if (const auto* password = qobject_cast<const PasswordField*>(&field))
        return password->Text();
    return static_cast<const QLineEdit&>(field).text();
}

/// The provider as the service lists it now. One from a file may say what it is and leave the rest to the
/// list.
std::optional<StorageProvider> Listed(const std::vector<StorageProvider>& providers,
                                      const StorageProvider& chosen, bool fromFile) {
    const auto find = [&providers](const auto& is) {
        const auto found = std::find_if(providers.begin(), providers.end(), is);
        return found == providers.end() ? std::nullopt : std::optional(*found);
    };
    const auto bySpId = [&chosen](const StorageProvider& each) {
        return each.spId.compare(chosen.spId, Qt::CaseInsensitive) == 0;
    };
    if (fromFile)
        return find(bySpId);
    const auto byName = [&chosen](const StorageProvider& each) {
        return each.displayName == chosen.displayName;
    };
    const auto byBoth = find([&](const StorageProvider& each) { return bySpId(each) && byName(each); });
    return byBoth ? byBoth : find(byName);
}

QString RemarkOf(const LoginField& field) {
    QStringList remarks;
    if (field.emailFormat)
        remarks += CSafePage::tr("An e-mail address");
    if (!field.beginWith.isEmpty())
        remarks += CSafePage::tr("Begins with %1").arg(field.beginWith.left(LongestLabel).simplified());
    return remarks.join(u". "_s);
}

QString ExampleOf(const LoginField& field) {
    return field.emailFormat ? u"name@example.org"_s : field.beginWith.left(LongestLabel).simplified();
}

} // namespace

QString LoginFieldLabel(const LoginField& field, int number) {
    const QString name = field.name.simplified();
    if (name.isEmpty())
        return CSafePage::tr("Field %1").arg(number);
    return name.size() > LongestLabel ? name.left(LongestLabel) + u'\u2026' : name;
}

CSafePage::CSafePage(const Console& console, std::shared_ptr<MountDraft> draft)
    : WizardPage(tr("Login Information For Virtual Directory"),
                 tr("What is entered here is kept by the service as a login card.")),
      m_console(console), m_draft(std::move(draft)), m_stack(new QStackedWidget) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_stack);
}

void CSafePage::Fill() {
    if (m_draft->fromFile && !m_draft->chosen.fields.empty())
        return ShowLogin(m_draft->chosen);
    Sheet().Read(
        *this, Lane::Service, tr("Reading what the provider asks for..."),
        [service = m_console.service](const std::stop_token& stop) {
            const ServiceAnswer answer = RequestProviders(service, stop);
            return answer ? ParseProviders(answer.body) : std::nullopt;
        },
        [this](const Loaded<std::vector<StorageProvider>>& providers) {
            if (!providers && !m_draft->fromFile)
                return tr("The list of storage providers could not be read. Please check that the service "
                          "is running.");
            auto provider = providers ? Listed(*providers, m_draft->chosen, m_draft->fromFile) : std::nullopt;
            if (!provider && m_draft->fromFile)
                provider = m_draft->chosen;
            if (!provider)
                return tr("The service offers the provider \"%1\" no longer.")
                    .arg(m_draft->chosen.displayName);
            ShowLogin(*provider);
            return QString();
        });
}

void CSafePage::ShowLogin(const StorageProvider& provider) {
    m_draft->provider = provider;
    auto login = std::find_if(m_logins.begin(), m_logins.end(),
                              [&provider](const Login& each) { return each.provider == provider; });
    if (login == m_logins.end())
        login = m_logins.insert(m_logins.end(), MakeLogin(provider));
    m_shown = static_cast<std::size_t>(login - m_logins.begin());
    m_stack->setCurrentWidget(login->area);
}

CSafePage::Login CSafePage::MakeLogin(const StorageProvider& provider) {
    Login login{provider, new QScrollArea, {}};
    auto* form = new Form;
    int number = 0;
    for (const LoginField& field : provider.fields)
        login.fields.push_back(field.hidden ? nullptr : AddField(*form, field, ++number));
    if (number == 0) {
        auto* nothing = new QLabel(tr("This provider needs no login information."));
        nothing->setTextFormat(Qt::PlainText);
        form->AddWide(nothing);
    }
    login.area->setFrameShape(QFrame::NoFrame);
    login.area->setFocusPolicy(Qt::NoFocus);
    login.area->setWidgetResizable(true);
    login.area->setWidget(form);
    m_stack->addWidget(login.area);
    connect(form, &Form::Edited, this, &WizardPage::Edited);
    return login;
}

QWidget* CSafePage::AddField(Form& form, const LoginField& field, int number) {
    const QString label = Form::PlainLabel(LoginFieldLabel(field, number));
    if (field.encrypted) {
        auto* password = new PasswordField;
        password->SetText(field.value);
        return form.Add(label, password, Form::Need::Required, RemarkOf(field));
    }
    auto* edit = new QLineEdit(field.value);
    edit->setPlaceholderText(ExampleOf(field));
    return form.Add(label, edit, Form::Need::Required, RemarkOf(field));
}

QStringList CSafePage::Values() const {
    const Login& login = m_logins.at(m_shown);
    QStringList values = InitialValues(login.provider);
    for (std::size_t i = 0; i < login.fields.size(); ++i)
        if (login.fields[i])
            values[qsizetype(i)] = TextOf(*login.fields[i]);
    return values;
}

void CSafePage::Leave() {
    const QStringList values = Values();
    const Login& login = m_logins.at(m_shown);
    if (const auto refusal = CheckLogin(login.provider.fields, values)) {
        QWidget* field = login.fields.at(refusal->field);
        if (field)
            login.area->ensureWidgetVisible(field);
        return Sheet().Stay({refusal->why, field, true});
    }
    m_draft->values = values;
    m_draft->card = MakeCard(m_draft->name, login.provider.fields, values, m_draft->card);
    Sheet().Pass();
}

void CSafePage::GoTo(QWidget* field) {
    m_logins.at(m_shown).area->ensureWidgetVisible(field);
    field->setFocus();
}

void CSafePage::showEvent(QShowEvent* event) {
    WizardPage::showEvent(event);
    if (m_draft->lookAt != MountOutcome::Place::Login)
        return;
    m_draft->lookAt = MountOutcome::Place::Nothing;
    const Login& login = m_logins.at(m_shown);
    if (const auto place = FieldToLookAt(login.provider.fields))
        GoTo(login.fields.at(*place));
}
