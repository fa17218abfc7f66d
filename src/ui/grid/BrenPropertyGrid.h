#pragma once

#include "grid/PropertyGroup.h"

#include <QScrollArea>

class QVBoxLayout;

/// Settings in groups, one below the other; a value is edited in place.
class CBrenPropertyGrid : public QScrollArea {
    Q_OBJECT

public:
    /// The prompts must outlive the grid.
    explicit CBrenPropertyGrid(UserPrompts& prompts, QWidget* parent = nullptr);

    /// The grid owns the group.
    CPropertyGroup* AddGroup(const QString& title);
    const std::vector<CPropertyGroup*>& Groups() const { return m_groups; }

    /// A remark shown beside an open editor.
    void SetEditorNote(const EditorNote& note) { m_noteOf = note; }

signals:
    /// Comes at the next turn of the event loop after the user has given a row another value, with the row as
    /// it was then.
    void ValueCommitted(int row, CPropertyGroup* group, const PropertyRow& committed);
    /// Comes at the next turn of the event loop, of a row whose value is chosen elsewhere.
    void ValueWanted(int row, CPropertyGroup* group);

private:
    void Step(const CPropertyGroup* from, int rows);

    UserPrompts& m_prompts;
    EditorNote m_noteOf;
    QVBoxLayout* m_stack;
    std::vector<CPropertyGroup*> m_groups;
};
