#include "grid/PropertyGroup.h"

#include "grid/DynamicCombo.h"
#include "grid/DynamicEdit.h"
#include "look/IconRegistry.h"
#include "look/Look.h"
#include "page/NoticeLine.h"
#include "page/UserPrompts.h"

#include <QApplication>
#include <QDir>
#include <QHeaderView>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <limits>

using namespace Qt::Literals::StringLiterals;

namespace {

constexpr int TitleHeight = 30;
constexpr int RowHeight = 28;
constexpr int FrameWidth = 1;
constexpr int MarginWidth = 22;
constexpr int ValueWidth = 120;
constexpr int NumberEditorWidth = 150;
constexpr int IconSize = 16;
constexpr int CellInset = 6;
constexpr int LabelLeft = MarginWidth + CellInset;
constexpr int EditorInset = 3;
constexpr int PageStep = 10;

bool IsOnDrive(const QString& value) {
    return QStringView(value).mid(1, 2) == u":\\"_s;
}

bool IsFolderPath(const QString& value) {
    return IsOnDrive(value) || (value.startsWith(u'/') && QDir::isAbsolutePath(value));
}

/// Draws the icon into the margin of the row.
void DrawIcon(QPainter& painter, const QRect& row, int icon) {
    const QRect place(row.left() + MarginWidth - IconSize, row.center().y() - IconSize / 2 + 1, IconSize,
                      IconSize);
    IconRegistry::Icon(icon).paint(&painter, place);
}

} // namespace

CPropertyGroup::CPropertyGroup(const QString& title, UserPrompts& prompts, QWidget* parent)
    : QTableView(parent), m_model(title), m_prompts(prompts) {
    setModel(&m_model);
    setAccessibleName(title);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setTabKeyNavigation(false);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    viewport()->setAutoFillBackground(false);
    viewport()->setMouseTracking(true);
    horizontalHeader()->hide();
    horizontalHeader()->setMinimumSectionSize(0);
    verticalHeader()->hide();
    verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    verticalHeader()->setDefaultSectionSize(RowHeight);
    setRowHeight(0, TitleHeight);
    setFixedHeight(TitleHeight + FrameWidth);
    connect(this, &QTableView::clicked, this, [this](const QModelIndex& index) {
        if (index.column() == PropertyModel::Value)
            OpenEditor(index.row());
    });
}

void CPropertyGroup::AddRow(const PropertyRow& row) {
    m_model.Add(row);
    setFocusPolicy(Qt::StrongFocus);
    setFixedHeight(TitleHeight + (RowCount() - 1) * RowHeight + FrameWidth);
}

std::optional<PropertyRow> CPropertyGroup::GetRow(int row) const {
    return m_model.Has(row) ? std::optional(m_model.Row(row)) : std::nullopt;
}

void CPropertyGroup::SelectRow(int row) {
    setCurrentIndex(m_model.index(row, PropertyModel::Value));
}

QRect CPropertyGroup::RowRect(int row) const {
    return {0, rowViewportPosition(row), viewport()->width(), rowHeight(row)};
}

QRect CPropertyGroup::ValueRect(int row) const {
    return visualRect(m_model.index(row, PropertyModel::Value));
}

bool CPropertyGroup::OpenEditor(int row, EditorStart start) {
    if (!m_model.IsEditable(row))
        return false;
    CloseEditor(EditorEnd::Commit);
    SelectRow(row);
    const PropertyRow& property = m_model.Row(row);
    if (property.opens) {
        emit ValueWanted(row);
        return true;
    }
    const bool isChoice = property.type == PropertyType::Boolean;
    ShowEditor(isChoice ? MakeCombo(row) : MakeEdit(row), row);
    if (property.type == PropertyType::Text && IsOnDrive(property.value) && start == EditorStart::Usual)
        PickFolder();
    return true;
}

QWidget* CPropertyGroup::MakeCombo(int row) {
    auto* combo = new CDynamicCombo(m_model.Row(row).value, viewport());
    m_editorText = [combo] { return combo->currentText(); };
    m_refusal = [] { return QString(); };
    m_initialText = combo->currentText();
    connect(combo, &CDynamicCombo::ListClosed, this, [this, combo] {
        if (m_editor == combo)
            CloseEditor(EditorEnd::Commit);
    });
    return combo;
}

QWidget* CPropertyGroup::MakeEdit(int row) {
    const PropertyRow& property = m_model.Row(row);
    auto* edit = new CDynamicEdit(property.value, property.type, viewport());
    m_editorText = [edit] { return edit->text(); };
    m_refusal = [edit] { return edit->Refusal(); };
    m_initialText = property.value;
    connect(edit, &QLineEdit::textChanged, this, &CPropertyGroup::ShowRemark);
    if (property.type == PropertyType::Text && IsFolderPath(property.value)) {
        edit->OfferFolder();
        connect(edit, &CDynamicEdit::FolderWanted, this, &CPropertyGroup::PickFolder);
    }
    return edit;
}

void CPropertyGroup::ShowEditor(QWidget* editor, int row) {
    m_editor = editor;
    m_editedRow = row;
    editor->setFont(Look::Font(Look::Small));
    editor->setAccessibleName(m_model.Row(row).label);
    PlaceEditor();
    editor->show();
    editor->setFocus(Qt::OtherFocusReason);
    editor->installEventFilter(this);
    ShowRemark();
}

void CPropertyGroup::PlaceEditor() {
    QRect place = ValueRect(m_editedRow).adjusted(0, EditorInset, -CellInset, -EditorInset);
    if (m_model.Row(m_editedRow).type != PropertyType::Text)
        place.setWidth(std::min(place.width(), NumberEditorWidth));
    m_editor->setGeometry(place);
}

void CPropertyGroup::CloseEditor(EditorEnd end) {
    if (!m_editor)
        return;
    QWidget* editor = std::exchange(m_editor, nullptr);
    const int row = std::exchange(m_editedRow, -1);
    const QString text = m_editorText();
    const QString refusal = m_refusal();
    editor->removeEventFilter(this);
    if (editor->hasFocus())
        setFocus(Qt::OtherFocusReason);
    editor->hide();
    editor->deleteLater();
    const bool differs = text.compare(m_initialText, Qt::CaseInsensitive) != 0;
    const bool wanted =
        end == EditorEnd::Commit && (differs || m_model.Row(row).mark == PropertyMark::NotSaved);
    const bool refused = wanted && !refusal.isEmpty();
    ShowNote(refused ? u"\"%1\": %2"_s.arg(Look::OneLine(text), refusal) : QString());
    if (wanted && !refused)
        Commit(row, text);
}

void CPropertyGroup::PickFolder() {
    const PropertyRow& property = m_model.Row(m_editedRow);
    m_picking = true;
    m_prompts.PickPath(
        this, {PickKind::Folder, property.label, property.value, {}},
        [this, edit = QPointer(qobject_cast<CDynamicEdit*>(m_editor))](const std::optional<QString>& folder) {
            m_picking = false;
            if (!edit || edit != m_editor)
                return;
            edit->setFocus(Qt::OtherFocusReason);
            if (!folder)
                return;
            edit->setText(*folder);
            CloseEditor(EditorEnd::Commit);
        });
}

void CPropertyGroup::Commit(int row, const QString& text) {
    const bool isNumber = m_model.Row(row).type == PropertyType::Integer;
    m_model.SetValue(row, isNumber ? QString::number(text.toInt()) : text);
    emit Committed(row, m_model.Row(row));
}

void CPropertyGroup::ShowRemark() {
    const QString text = m_editorText();
    const QString refusal = m_refusal();
    m_notedRow = m_editedRow;
    ShowNote(!refusal.isEmpty() ? refusal : m_noteOf ? m_noteOf(m_model.Row(m_editedRow), text) : QString());
    m_editor->setAccessibleDescription(m_note ? m_note->Text() : QString());
}

void CPropertyGroup::ShowNote(const QString& text) {
    if (!m_note && !text.isEmpty()) {
        m_note = new NoticeLine(parentWidget());
        m_note->setAttribute(Qt::WA_TransparentForMouseEvents); // a click is for the row below it
    }
    if (!m_note)
        return;
    m_note->SetText(text);
    PlaceNote();
}

void CPropertyGroup::PlaceNote() {
    const QRect value = ValueRect(m_notedRow).adjusted(0, EditorInset, -CellInset, -EditorInset);
    const QRect above(viewport()->mapTo(parentWidget(), value.topLeft()), value.size());
    m_note->resize(above.width(), m_note->heightForWidth(above.width()));
    const bool fitsBelow = above.bottom() + m_note->height() < parentWidget()->height();
    m_note->move(above.left(), fitsBelow ? above.bottom() + 2 : above.top() - m_note->height() - 1);
    m_note->raise();
}

bool CPropertyGroup::eventFilter(QObject* watched, QEvent* event) {
    if (!m_editor || watched != m_editor)
        return QTableView::eventFilter(watched, event);
    if (event->type() == QEvent::FocusOut) {
        // A list, a menu or a folder dialog of the editor's own takes the focus only for a while.
        const bool forPopup = static_cast<QFocusEvent*>(event)->reason() == Qt::PopupFocusReason;
        if (!m_picking && !forPopup && !QApplication::activePopupWidget())
            CloseEditor(EditorEnd::Commit);
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!enter && key != Qt::Key_Escape)
        return false;
    if (!enter || m_refusal().isEmpty())
        CloseEditor(enter ? EditorEnd::Commit : EditorEnd::Cancel);
    return true;
}

void CPropertyGroup::keyPressEvent(QKeyEvent* event) {
    constexpr int Everything = std::numeric_limits<int>::max() / 2;
    switch (event->key()) {
    case Qt::Key_Up:
        return StepWanted(-1);
    case Qt::Key_Down:
        return StepWanted(1);
    case Qt::Key_PageUp:
        return StepWanted(-PageStep);
    case Qt::Key_PageDown:
        return StepWanted(PageStep);
    case Qt::Key_Home:
        return StepWanted(-Everything);
    case Qt::Key_End:
        return StepWanted(Everything);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        OpenEditor(CurrentRow());
        return;
    case Qt::Key_F2:
        OpenEditor(CurrentRow(), EditorStart::Typing);
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
        return;
    default:
        if (!TypeOver(*event))
            QTableView::keyPressEvent(event);
    }
}

bool CPropertyGroup::TypeOver(QKeyEvent& event) {
    const bool shortcut = event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier);
    if (shortcut || event.text().isEmpty() || !event.text().front().isPrint() ||
        !OpenEditor(CurrentRow(), EditorStart::Typing))
        return false;
    if (m_editor)
        QCoreApplication::sendEvent(m_editor, &event);
    return true;
}

void CPropertyGroup::focusInEvent(QFocusEvent* event) {
    if (CurrentRow() < 0 && RowCount() > 1)
        SelectRow(event->reason() == Qt::BacktabFocusReason ? RowCount() - 1 : 1);
    QTableView::focusInEvent(event);
    viewport()->update();
}

void CPropertyGroup::mouseMoveEvent(QMouseEvent* event) {
    SetHoveredRow(indexAt(event->pos()).row());
    QTableView::mouseMoveEvent(event);
}

void CPropertyGroup::leaveEvent(QEvent* event) {
    SetHoveredRow(-1);
    QTableView::leaveEvent(event);
}

void CPropertyGroup::SetHoveredRow(int row) {
    if (std::exchange(m_hoveredRow, row) != row)
        viewport()->update();
}

void CPropertyGroup::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    const int whole = viewport()->width();
    const int label = std::clamp(whole - ValueWidth, MarginWidth, m_labelWidth);
    setColumnWidth(PropertyModel::Label, label);
    setColumnWidth(PropertyModel::Value, std::max(0, whole - label));
    if (m_editor)
        PlaceEditor();
    if (m_note)
        PlaceNote();
}

void CPropertyGroup::paintEvent(QPaintEvent* event) {
    QPainter painter(viewport());
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath outline;
    outline.addRoundedRect(QRectF(viewport()->rect()).adjusted(0.5, 0.5, -0.5, -0.5), Look::CornerRadius,
                           Look::CornerRadius);
    painter.fillPath(outline, Look::Paper);
    painter.setClipPath(outline);
    PaintTitle(painter);
    for (int row = std::max(1, rowAt(event->rect().top())); row < RowCount(); ++row) {
        if (rowViewportPosition(row) > event->rect().bottom())
            break;
        PaintRow(painter, row);
    }
    painter.setClipping(false);
    painter.setPen(Look::Line);
    painter.drawPath(outline);
    if (hasFocus() && CurrentRow() > 0)
        Look::DrawFocusRing(painter, RowRect(CurrentRow()));
}

void CPropertyGroup::PaintTitle(QPainter& painter) const {
    const QRect band = RowRect(0);
    Look::PaintBand(painter, band);
    DrawIcon(painter, band, SettingGroupIcon);
    painter.setFont(Look::Font(Look::Body, QFont::Bold));
    painter.setPen(Look::Ink);
    Look::DrawTextLine(painter, band.adjusted(LabelLeft, 0, -Look::TextInset, 0), m_model.Row(0).label);
}

void CPropertyGroup::PaintRow(QPainter& painter, int row) const {
    const PropertyRow& property = m_model.Row(row);
    const QRect area = RowRect(row);
    if (row == CurrentRow() && hasFocus())
        painter.fillRect(area, Look::AccentTint);
    else if (row % 2 == 1)
        painter.fillRect(area, Look::Side);
    DrawIcon(painter, area, SettingIcon);
    painter.setFont(Look::Font(Look::Small));
    painter.setPen(Look::Ink);
    Look::DrawTextLine(
        painter, visualRect(m_model.index(row, PropertyModel::Label)).adjusted(LabelLeft, 0, -CellInset, 0),
        property.label);
    PaintValue(painter, row);
}

void CPropertyGroup::PaintValue(QPainter& painter, int row) const {
    const PropertyRow& property = m_model.Row(row);
    const QRect value = ValueRect(row);
    if (row == m_hoveredRow && m_model.IsEditable(row)) {
        painter.setPen(Look::AccentLine);
        painter.setBrush(Look::Paper);
        painter.drawRoundedRect(
            QRectF(value).adjusted(0.5, EditorInset + 0.5, -CellInset - 0.5, -EditorInset - 0.5),
            Look::CornerRadius, Look::CornerRadius);
        painter.setBrush(Qt::NoBrush);
    }
    QRect place = value.adjusted(CellInset, 0, -2 * CellInset, 0);
    const QString mark = MarkText(property.mark);
    if (property.mark == PropertyMark::Reading) {
        painter.setPen(Look::Muted);
        return Look::DrawTextLine(painter, place, mark);
    }
    if (!mark.isEmpty()) {
        painter.setPen(property.mark == PropertyMark::NotSaved ? Look::Failed : Look::Muted);
        painter.drawText(place, Qt::AlignVCenter | Qt::AlignRight | Qt::TextSingleLine, mark);
        place.adjust(0, 0, -painter.fontMetrics().horizontalAdvance(mark) - CellInset, 0);
    }
    const bool pale = property.readOnly || property.mark == PropertyMark::NotRead;
    painter.setPen(pale ? Look::Muted : Look::Ink);
    Look::DrawTextLine(painter, place, property.value);
}
