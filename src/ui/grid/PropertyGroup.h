#pragma once

#include "grid/PropertyModel.h"

#include <QPointer>
#include <QTableView>

#include <functional>
#include <optional>

class NoticeLine;
class UserPrompts;

/// A remark on what stands in an open editor; empty for none.
using EditorNote = std::function<QString(const PropertyRow& row, const QString& text)>;

/// A group of the property grid: a title and a row a setting, whose value is edited in place. Rows are
/// counted from 0, which is the title.
class CPropertyGroup : public QTableView {
    Q_OBJECT

public:
    /// The prompts must outlive the group.
    CPropertyGroup(const QString& title, UserPrompts& prompts, QWidget* parent = nullptr);

    void AddRow(const PropertyRow& row);
    int RowCount() const { return m_model.rowCount(); }
    /// None outside of the rows.
    std::optional<PropertyRow> GetRow(int row) const;
    /// Of no effect on an open editor.
    void SetValue(int row, const QString& value) { m_model.SetValue(row, value); }
    void SetMark(int row, PropertyMark mark) { m_model.SetMark(row, mark); }
    void SetReadOnly(int row, bool readOnly) { m_model.SetReadOnly(row, readOnly); }
    /// Pixels for the margin and the labels, as far as there is room; before the group is shown.
    void SetLabelWidth(int width) { m_labelWidth = width; }
    void SetEditorNote(EditorNote note) { m_noteOf = std::move(note); }

    enum class EditorStart { Usual, Typing };

    /// Opens the editor of the row's value. Over a folder on a drive it asks for another folder at once,
    /// unless typing has begun; cancelled, that leaves the editor open. Of a row that opens, tells that a
    /// value is wanted. False when the row cannot be edited.
    bool OpenEditor(int row, EditorStart start = EditorStart::Usual);
    int EditedRow() const { return m_editedRow; } ///< -1 for none
    QWidget* Editor() const { return m_editor; }  ///< null for none

    int CurrentRow() const { return currentIndex().row(); } ///< -1 for none
    void SelectRow(int row);
    QRect RowRect(int row) const; ///< in the group

signals:
    /// The user has given the row another value, or the same one again that was not saved.
    void Committed(int row, const PropertyRow& committed);
    /// A row whose value is chosen elsewhere is to be given one.
    void ValueWanted(int row);
    /// The keyboard wants to go this many rows down (or up) from the current one.
    void StepWanted(int rows);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    enum class EditorEnd { Commit, Cancel };

    QWidget* MakeCombo(int row);
    QWidget* MakeEdit(int row);
    void ShowEditor(QWidget* editor, int row);
    void PlaceEditor();
    void CloseEditor(EditorEnd end);
    void PickFolder();
    bool TypeOver(QKeyEvent& event);
    void Commit(int row, const QString& text);
    void ShowNote(const QString& text);
    void ShowRemark();
    void PlaceNote();
    QRect ValueRect(int row) const;
    void SetHoveredRow(int row);
    void PaintTitle(QPainter& painter) const;
    void PaintRow(QPainter& painter, int row) const;
    void PaintValue(QPainter& painter, int row) const;

    PropertyModel m_model;
    UserPrompts& m_prompts;
    EditorNote m_noteOf;
    NoticeLine* m_note = nullptr;
    QWidget* m_editor = nullptr;
    std::function<QString()> m_editorText;
    std::function<QString()> m_refusal; ///< why the text is not taken; empty when it is
    QString m_initialText;
    int m_editedRow = -1;
    int m_notedRow = -1; ///< the row that the note is about
    bool m_picking = false;
    int m_hoveredRow = -1;
    int m_labelWidth = 472;
};
