#include "cards/StateChoices.h"

#include "look/Look.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>

#include <algorithm>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int Inset = 8;
constexpr int All = -2; ///< among the button's numbers, of which -1 means none

class ChoiceButton : public QToolButton {
public:
    ChoiceButton() {
        setCheckable(true);
        setFocusPolicy(Qt::StrongFocus);
        setFont(Look::Font(Look::Small));
        setAttribute(Qt::WA_Hover);
    }

    /// `widest`: the text with the widest count that is to find room.
    void Set(const QString& text, const QString& widest) {
        setText(text);
        const QFontMetrics bold(Look::Font(Look::Small, QFont::Bold));
        const int width = 2 * Inset + std::max(bold.horizontalAdvance(text), bold.horizontalAdvance(widest));
        if (std::exchange(m_width, width) != width)
            updateGeometry();
    }

    QSize sizeHint() const override { return {m_width, 24}; }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(isChecked() || underMouse() ? Look::AccentLine : Look::Line);
        painter.setBrush(isChecked() ? Look::AccentTint : Look::Paper);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Look::CornerRadius,
                                Look::CornerRadius);
        painter.setFont(Look::Font(Look::Small, isChecked() ? QFont::Bold : QFont::Normal));
        painter.setPen(isChecked() ? Look::Ink : Look::Secondary);
        painter.drawText(rect(), Qt::AlignCenter, text());
        if (hasFocus())
            Look::DrawFocusRing(painter, rect());
    }

private:
    int m_width = 0;
};

} // namespace

StateChoices::StateChoices(std::vector<CardState> states, QWidget* parent)
    : QWidget(parent), m_states(std::move(states)), m_buttons(new QButtonGroup(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    const auto add = [this, row](int number) {
        auto* button = new ChoiceButton;
        m_buttons->addButton(button, number);
        row->addWidget(button);
        button->setChecked(number == All);
    };
    add(All);
    for (const CardState& state : m_states)
        add(state.state);
    connect(m_buttons, &QButtonGroup::idToggled, this, [this](int, bool chosen) {
        if (chosen)
            emit ChoiceChanged();
    });
    SetCounts(0, [](int) { return 0; });
}

void StateChoices::SetCounts(int all, const std::function<int(int state)>& countOf) {
    m_widest = std::max(m_widest, all);
    const QString zeros(QString::number(m_widest).size(), u'0');
    const auto show = [this, &zeros](int number, const QString& text, int count) {
        static_cast<ChoiceButton*>(m_buttons->button(number))
            ->Set(u"%1 %2"_s.arg(text).arg(count), u"%1 %2"_s.arg(text, zeros));
    };
    show(All, tr("All"), all);
    for (const CardState& state : m_states)
        show(state.state, state.text, countOf(state.state));
}

std::optional<int> StateChoices::Chosen() const {
    const int number = m_buttons->checkedId();
    return number == All ? std::nullopt : std::optional(number);
}
