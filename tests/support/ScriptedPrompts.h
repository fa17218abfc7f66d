#pragma once

#include "page/UserPrompts.h"

#include <QPointer>
#include <QStringList>
#include <QWidget>
#include <QtTest/QTest>

#include <deque>

/// Answers from a script, at once or when released. What the script does not expect fails the test and
/// counts as cancelled; so does a script that was not played to its end.
class ScriptedPrompts : public UserPrompts {
public:
    ~ScriptedPrompts() override {
        for (const Line& line : m_script)
            Fail(QStringLiteral("never asked"), line.text);
    }

    void ExpectMessage(const QString& text) { m_script.push_back({Kind::Message, text, {}}); }
    void ExpectText(const QString& label, std::optional<QString> answer) {
        m_script.push_back({Kind::Text, label, std::move(answer)});
    }
    void ExpectRemotePick(const QString& caption, std::optional<QString> answer) {
        m_script.push_back({Kind::RemotePick, caption, std::move(answer)});
    }
    /// The box is shown; `operation` is the one that stands.
    void ExpectOperation(const QString& text) { m_script.push_back({Kind::Operation, text, {}}); }
    void ExpectQuestion(const QString& text, bool yes) {
        m_script.push_back({Kind::Question, text, yes ? std::optional(QString()) : std::nullopt});
    }
    void ExpectPick(const QString& caption, std::optional<QString> answer) {
        m_script.push_back({Kind::Pick, caption, std::move(answer)});
    }
    bool IsPlayed() const { return m_script.empty(); }

    /// From now on answers wait for `Release`, as a user thinks.
    void Hold() { m_held = true; }
    void Release() {
        m_held = false;
        for (const auto& answer : std::exchange(m_waiting, {}))
            answer();
    }

    QStringList details;                       ///< of each message and question
    QString clipboardText;                     ///< as last written
    Question asked;                            ///< the last one
    std::optional<OperationRequest> operation; ///< while the box stands

    void Tell(QWidget* over, const MessageText& message, std::function<void()> done) override {
        details.append(message.details);
        Play(Kind::Message, message.text);
        Answer(over, [done = std::move(done)] {
            if (done)
                done();
        });
    }

    void Ask(QWidget* over, const Question& question, std::function<void(bool)> answer) override {
        details.append(question.details);
        asked = question;
        const bool yes = Play(Kind::Question, question.text).has_value();
        Answer(over, [yes, answer = std::move(answer)] { answer(yes); });
    }

    void AskText(QWidget* over, const TextRequest& request,
                 std::function<void(std::optional<QString>)> answer) override {
        AnswerWith(over, Play(Kind::Text, request.label), request.refuse, std::move(answer));
    }

    void PickRemoteFolder(QWidget* over, const RemoteFolderRequest& request,
                          std::function<void(std::optional<QString>)> answer) override {
        AnswerWith(over, Play(Kind::RemotePick, request.caption), request.refuse, std::move(answer));
    }

    [[nodiscard]] std::shared_ptr<void> ShowOperation(QWidget*, const OperationRequest& request) override {
        Play(Kind::Operation, request.text);
        operation = request;
        return {this, [](void* prompts) { static_cast<ScriptedPrompts*>(prompts)->operation.reset(); }};
    }

    void PickPath(QWidget* over, const PickRequest& request,
                  std::function<void(std::optional<QString>)> answer) override {
        const std::optional<QString> picked = Play(Kind::Pick, request.caption);
        Answer(over, [picked, answer = std::move(answer)] { answer(picked); });
    }

    void SetClipboardText(const QString& text) override { clipboardText = text; }

private:
    enum class Kind { Message, Question, Text, Pick, RemotePick, Operation };
    struct Line {
        Kind kind;
        QString text;
        std::optional<QString> answer;
    };

    std::optional<QString> Play(Kind kind, const QString& text) {
        if (m_script.empty() || m_script.front().kind != kind || m_script.front().text != text) {
            Fail(QStringLiteral("not expected"), text);
            return {};
        }
        const Line line = m_script.front();
        m_script.pop_front();
        return line.answer;
    }

    using TextAnswer = std::function<void(std::optional<QString>)>;

    /// An answer that the asker would refuse is a fault of the script: the real window would not give it.
    void AnswerWith(QWidget* over, const std::optional<QString>& text,
                    const std::function<QString(const QString&)>& refuse, TextAnswer answer) {
        if (text && refuse && !refuse(*text).isEmpty())
            Fail(QStringLiteral("refused (%1)").arg(refuse(*text)), *text);
        Answer(over, [text, answer = std::move(answer)] { answer(text); });
    }

    void Answer(QWidget* over, std::function<void()> answer) {
        m_waiting.emplace_back(
            [over = QPointer<QWidget>(over), wanted = over != nullptr, answer = std::move(answer)] {
                if (over || !wanted)
                    answer();
            });
        if (!m_held)
            Release();
    }

    static void Fail(const QString& how, const QString& text) {
        QTest::qFail(qPrintable(QStringLiteral("prompt %1: %2").arg(how, text)), __FILE__, __LINE__);
    }

    std::deque<Line> m_script;
    std::vector<std::function<void()>> m_waiting;
    bool m_held = false;
};
