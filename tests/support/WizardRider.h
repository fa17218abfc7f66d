#pragma once

#include "support/SteppingReader.h"
#include "wizard/BrenPropertySheet.h"
#include "wizard/WizardLine.h"

#include <QComboBox>
#include <QDateTimeEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSpinBox>
#include <QtTest/QTest>

/// Drives a wizard as its user does, by labels, buttons and keys, from a script whose steps are joined by
/// " | ":
///   LABEL=TEXT     types the text over what stands in the field
///   LABEL==TEXT    the field holds the text
///   Next           clicks the button (Back, Next, Finish, Cancel or one of the page)
///   key KEY        to what has the focus, as in "key Ctrl+Return"
///   work           the next job of the service's lane, whose answer is held back
///   answer         the answer that was held back longest
///   step           work and answer; "steps": all that there are
///   page TITLE     this page is shown        says TEXT    the line says so, as it stands
///   busy           the line tells of work, and neither Next nor Finish can be pressed
///   on NAME        the button can be pressed; "off NAME" it cannot
///   focus LABEL    the field, or the button, has the focus
///   closed         the wizard was left by Cancel; "finished" it went to its end
class WizardRider {
public:
    WizardRider(CBrenPropertySheet* sheet, SteppingReader& reader) : m_sheet(sheet), m_reader(reader) {
        QObject::connect(sheet, &QDialog::finished, sheet, [this](int result) { m_result = result; });
        sheet->open();
    }
    ~WizardRider() { delete m_sheet; }

    CBrenPropertySheet* Sheet() const { return m_sheet; }

    /// False, and the test has failed, at the first step that does not hold.
    bool Ride(const QString& script) {
        for (const QString& step : script.split(QStringLiteral(" | "))) {
            const QString fault = Do(step.trimmed());
            if (fault.isEmpty())
                continue;
            QTest::qFail(qPrintable(QStringLiteral("at \"%1\" of \"%2\": %3").arg(step, script, fault)),
                         __FILE__, __LINE__);
            return false;
        }
        return true;
    }

    /// The field of the present page that a label stands for; none when there is none.
    QWidget* Field(const QString& label) const {
        for (QWidget* child : m_sheet->CurrentPage()->findChildren<QWidget*>())
            if (child->isVisibleTo(m_sheet) && Plain(child->accessibleName()) == label)
                return child->focusProxy() ? child->focusProxy() : child;
        for (const QLabel* child : m_sheet->CurrentPage()->findChildren<QLabel*>())
            if (child->buddy() && child->isVisibleTo(m_sheet) && Plain(child->text()) == label)
                return child->buddy()->focusProxy() ? child->buddy()->focusProxy() : child->buddy();
        return nullptr;
    }

private:
    QString Do(const QString& step) {
        if (step == QLatin1String("closed") || step == QLatin1String("finished"))
            return Compare(m_result, std::optional<int>(step == QLatin1String("closed") ? QDialog::Rejected
                                                                                        : QDialog::Accepted));
        if (!m_sheet)
            return QStringLiteral("the wizard has gone");
        if (const auto at = step.indexOf(QLatin1String("==")); at > 0)
            return Compare(TextOf(Field(step.left(at))), step.mid(at + 2));
        if (const auto at = step.indexOf(u'='); at > 0)
            return Type(Field(step.left(at)), step.mid(at + 1));
        const QString word = step.section(u' ', 0, 0);
        const QString rest = step.section(u' ', 1);
        if (word == QLatin1String("key"))
            return Key(rest);
        if (word == QLatin1String("work"))
            return m_reader.Work(Lane::Service) ? QString() : QStringLiteral("nothing to do");
        if (word == QLatin1String("answer"))
            return m_reader.Finish(), QString();
        if (word == QLatin1String("step"))
            return m_reader.Step(Lane::Service) ? QString() : QStringLiteral("nothing to do");
        if (word == QLatin1String("steps"))
            return m_reader.StepAll(), QString();
        if (word == QLatin1String("page"))
            return Compare(m_sheet->CurrentPage()->Title(), rest);
        if (word == QLatin1String("says"))
            return Compare(Line().Text(), rest);
        if (word == QLatin1String("busy"))
            return Line().IsBusy() && !Button(QStringLiteral("Next"), QStringLiteral("Finish"))->isEnabled()
                       ? QString()
                       : QStringLiteral("it is not");
        if (word == QLatin1String("on") || word == QLatin1String("off"))
            return Button(rest) ? Compare(Button(rest)->isEnabled(), word == QLatin1String("on"))
                                : QStringLiteral("no such button");
        if (word == QLatin1String("focus"))
            return Focus(rest);
        return Click(step);
    }

    template <typename Value>
    static QString Compare(const Value& found, const Value& wanted) {
        if (found == wanted)
            return {};
        if constexpr (std::is_same_v<Value, QString>)
            return QStringLiteral("found \"%1\"").arg(found);
        return QStringLiteral("it is not");
    }

    QString Type(QWidget* field, const QString& text) {
        if (!field || !field->isEnabled())
            return QStringLiteral("no such field");
        field->setFocus();
        if (auto* combo = qobject_cast<QComboBox*>(field); combo && !combo->isEditable()) {
            combo->setCurrentText(text);
            return Compare(combo->currentText(), text);
        }
        QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
        if (text.isEmpty())
            QTest::keyClick(field, Qt::Key_Delete);
        QTest::keyClicks(field, text);
        return {};
    }

    QString Key(const QString& key) {
        const QKeyCombination keys = QKeySequence::fromString(key)[0];
        QWidget* target = m_sheet->focusWidget() ? m_sheet->focusWidget() : m_sheet.data();
        QTest::keyClick(target, keys.key(), keys.keyboardModifiers());
        return {};
    }

    QString Click(const QString& name) {
        QPushButton* button = Button(name);
        if (!button)
            return QStringLiteral("no such button or step");
        QTest::mouseClick(button, Qt::LeftButton);
        return {};
    }

    QString Focus(const QString& label) const {
        const QWidget* wanted = Field(label) ? Field(label) : Button(label);
        const QWidget* focused = m_sheet->focusWidget();
        if (wanted && focused == wanted)
            return {};
        return QStringLiteral("%1 \"%2\" has it")
            .arg(QString::fromLatin1(focused ? focused->metaObject()->className() : "nothing"),
                 TextOf(focused));
    }

    QPushButton* Button(const QString& name, const QString& other = {}) const {
        for (QPushButton* button : m_sheet->findChildren<QPushButton*>())
            if (button->isVisible() && (Plain(button->text()) == name || Plain(button->text()) == other))
                return button;
        return nullptr;
    }

    WizardLine& Line() const { return *m_sheet->findChild<WizardLine*>(); }

    static QString Plain(QString label) {
        return label.remove(u'&').remove(QStringLiteral(" *")).remove(QStringLiteral(", required"));
    }

    static QString TextOf(const QWidget* field) {
        if (const auto* text = qobject_cast<const QPlainTextEdit*>(field))
            return text->toPlainText();
        if (const auto* choice = qobject_cast<const QComboBox*>(field))
            return choice->currentText();
        return field ? field->property(field->property("text").isValid() ? "text" : "value").toString()
                     : QStringLiteral("(no such field)");
    }

    QPointer<CBrenPropertySheet> m_sheet;
    SteppingReader& m_reader;
    std::optional<int> m_result;
};
