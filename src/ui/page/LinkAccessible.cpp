#include "page/LinkAccessible.h"

#include "page/LinkLabel.h"

#include <QAccessibleWidget>

#include <memory>
#include <vector>

namespace {

/// One span. It has no widget of its own; its label makes and registers it.
class AccessibleLink : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    AccessibleLink(LinkLabel& label, int span) : m_label(&label), m_span(span) {}

    bool isValid() const override { return m_label && m_span < m_label->Spans().size(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return m_label->window()->windowHandle(); }
    QAccessible::Role role() const override { return QAccessible::Link; }
    QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(m_label); }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QRect rect() const override { return parent()->rect(); }
    void setText(QAccessible::Text, const QString&) override {}

    QAccessible::State state() const override {
        QAccessible::State state;
        state.linked = true;
        state.focusable = true;
        state.invisible = !m_label->isVisible();
        return state;
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && isValid() ? m_label->Spans().at(m_span) : QString();
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override { return {pressAction()}; }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }

    void doAction(const QString& action) override {
        if (action == pressAction() && isValid())
            emit m_label->LinkClicked(m_span);
    }

private:
    QPointer<LinkLabel> m_label;
    int m_span;
};

class AccessibleLabel : public QAccessibleWidget {
public:
    explicit AccessibleLabel(LinkLabel& label)
        : QAccessibleWidget(&label, QAccessible::StaticText), m_label(label) {}

    ~AccessibleLabel() override {
        for (const QAccessible::Id id : m_links)
            QAccessible::deleteAccessibleInterface(id);
    }

    int childCount() const override { return static_cast<int>(m_label.Spans().size()); }

    QAccessibleInterface* child(int index) const override {
        if (index < 0 || index >= childCount())
            return nullptr;
        while (static_cast<int>(m_links.size()) <= index)
            m_links.push_back(QAccessible::registerAccessibleInterface(
                new AccessibleLink(m_label, static_cast<int>(m_links.size()))));
        return QAccessible::accessibleInterface(m_links[static_cast<std::size_t>(index)]);
    }

    int indexOfChild(const QAccessibleInterface* wanted) const override {
        for (int index = 0; index < childCount(); ++index)
            if (child(index) == wanted)
                return index;
        return -1;
    }

private:
    LinkLabel& m_label;
    mutable std::vector<QAccessible::Id> m_links; ///< by span
};

QAccessibleInterface* Make(const QString&, QObject* object) {
    auto* label = qobject_cast<LinkLabel*>(object);
    return label ? new AccessibleLabel(*label) : nullptr;
}

} // namespace

void TeachLinksToScreenReaders() {
    static const bool once = (QAccessible::installFactory(Make), true);
    Q_UNUSED(once)
}
