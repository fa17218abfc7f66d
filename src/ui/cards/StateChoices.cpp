#include "cards/StateChoices.h"

#include "look/Look.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QPainter>
#include <QToolButton>

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

    QSize sizeHint() const override {
        return {2 * Inset + QFontMetrics(Look::Font(Look::Small, QFont::Bold)).horizontalAdvance(text()), 24};
    }

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
    const auto show = [this](int number, const QString& text, int count) {
        QAbstractButton* button = m_buttons->button(number);
        button->setText(u"%1 %2"_s.arg(text).arg(count));
        button->updateGeometry();
    };
    show(All, tr("All"), all);
    for (const CardState& state : m_states)
        show(state.state, state.text, countOf(state.state));
}

std::optional<int> StateChoices::Chosen() const {
    const int number = m_buttons->checkedId();
    return number == All ? std::nullopt : std::optional(number);
}
