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

namespace {

constexpr int TitleHeight = 30;
constexpr int RowHeight = 28;
constexpr int FrameWidth = 1;
constexpr int MarginWidth = 22;
constexpr int LabelWidth = 450;
constexpr int ValueWidth = 120;
constexpr int NumberEditorWidth = 150;
constexpr int IconSize = 16;
constexpr int CellInset = 6;
constexpr int LabelLeft = MarginWidth + CellInset;
constexpr int EditorInset = 3;
constexpr int PageStep = 10;

bool IsFolderPath(const QString& value) {
    const bool onDrive = QStringView(value).mid(1, 2) == QStringLiteral(":\\");
    return onDrive || (value.startsWith(u'/') && QDir::isAbsolutePath(value));
}

/// Draws the icon into the margin of the row.
void DrawIcon(QPainter& painter, const QRect& row, int icon) {
    const QRect place(row.left() + MarginWidth - IconSize, row.center().y() - IconSize / 2 + 1, IconSize,
                      IconSize);
    IconRegistry::Icon(icon).paint(&painter, place);
}

void DrawLine(QPainter& painter, const QRect& place, const QString& text) {
    const QString shown = painter.fontMetrics().elidedText(OneLineText(text), Qt::ElideRight, place.width());
    painter.drawText(place, Qt::AlignVCenter | Qt::AlignLeft | Qt::TextSingleLine, shown);
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
    setColumnHidden(PropertyModel::Key, true);
    setColumnHidden(PropertyModel::Type, true);
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

bool CPropertyGroup::OpenEditor(int row) {
    if (!m_model.IsEditable(row))
        return false;
    CloseEditor(EditorEnd::Commit);
    SelectRow(row);
    const PropertyRow& property = m_model.Row(row);
    if (property.type == ServiceClient::ValueType::Boolean) {
        auto* combo = new CDynamicCombo(property.value, viewport());
        m_editorText = [combo] { return std::optional(combo->currentText()); };
        connect(combo, &CDynamicCombo::ListClosed, this, [this, combo] {
            if (m_editor == combo)
                CloseEditor(EditorEnd::Commit);
        });
        PlaceEditor(combo, row);
    } else if (property.type == ServiceClient::ValueType::String && IsFolderPath(property.value)) {
        PickFolder(row);
    } else {
        auto* edit = new CDynamicEdit(property.value, property.type, viewport());
        m_editorText = [edit] { return edit->Text(); };
        connect(edit, &QLineEdit::textChanged, this, &CPropertyGroup::ShowNote);
        PlaceEditor(edit, row);
        ShowNote(edit->text());
    }
    return true;
}

void CPropertyGroup::PlaceEditor(QWidget* editor, int row) {
    const PropertyRow& property = m_model.Row(row);
    QRect place = ValueRect(row).adjusted(0, EditorInset, -CellInset, -EditorInset);
    if (property.type != ServiceClient::ValueType::String)
        place.setWidth(std::min(place.width(), NumberEditorWidth));
    m_editor = editor;
    m_editedRow = row;
    m_initialText = m_editorText().value_or(property.value);
    editor->setFont(Look::Font(Look::Small));
    editor->setAccessibleName(property.label);
    editor->setGeometry(place);
    editor->show();
    editor->setFocus(Qt::OtherFocusReason);
    editor->installEventFilter(this);
}

void CPropertyGroup::CloseEditor(EditorEnd end) {
    if (!m_editor)
        return;
    QWidget* editor = std::exchange(m_editor, nullptr);
    const int row = std::exchange(m_editedRow, -1);
    const std::optional<QString> text = std::exchange(m_editorText, nullptr)();
    editor->removeEventFilter(this);
    if (editor->hasFocus())
        setFocus(Qt::OtherFocusReason);
    editor->hide();
    editor->deleteLater();
    ShowNote({});
    if (end == EditorEnd::Commit && text && text->compare(m_initialText, Qt::CaseInsensitive) != 0)
        Commit(row, *text);
}

void CPropertyGroup::PickFolder(int row) {
    const QString before = m_model.Row(row).value;
    const PickRequest request{PickKind::Folder, m_model.Row(row).label, before, {}};
    m_prompts.PickPath(this, request, [this, row, before](const std::optional<QString>& folder) {
        if (folder && folder->compare(before, Qt::CaseInsensitive) != 0)
            Commit(row, *folder);
    });
}

void CPropertyGroup::Commit(int row, const QString& text) {
    const bool isNumber = m_model.Row(row).type == ServiceClient::ValueType::Integer;
    m_model.SetValue(row, isNumber ? QString::number(text.toInt()) : text);
    emit Committed(row, m_model.Row(row));
}

void CPropertyGroup::ShowNote(const QString& text) {
    const QString remark = m_editor && m_noteOf ? m_noteOf(m_model.Row(m_editedRow), text) : QString();
    if (!m_note && !remark.isEmpty())
        m_note = new NoticeLine(parentWidget());
    if (!m_note)
        return;
    m_note->SetText(remark);
    if (remark.isEmpty())
        return;
    const QRect editor(m_editor->mapTo(parentWidget(), QPoint()), m_editor->size());
    m_note->setFixedWidth(editor.width());
    m_note->adjustSize();
    const bool fitsBelow = editor.bottom() + m_note->height() < parentWidget()->height();
    m_note->move(editor.left(), fitsBelow ? editor.bottom() + 2 : editor.top() - m_note->height() - 1);
    m_note->raise();
}

bool CPropertyGroup::eventFilter(QObject* watched, QEvent* event) {
    if (!m_editor || watched != m_editor)
        return QTableView::eventFilter(watched, event);
    if (event->type() == QEvent::FocusOut) {
        // A list or a menu of the editor's own takes the focus only for a while.
        const bool forPopup = static_cast<QFocusEvent*>(event)->reason() == Qt::PopupFocusReason;
        if (!forPopup && !QApplication::activePopupWidget())
            CloseEditor(EditorEnd::Commit);
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    const int key = static_cast<QKeyEvent*>(event)->key();
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!enter && key != Qt::Key_Escape)
        return false;
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
    case Qt::Key_F2:
    case Qt::Key_Space:
        OpenEditor(CurrentRow());
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
        return;
    default:
        QTableView::keyPressEvent(event);
    }
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
    const int rest = viewport()->width() - MarginWidth;
    const int label = std::clamp(rest - ValueWidth, 0, LabelWidth);
    setColumnWidth(PropertyModel::Margin, MarginWidth);
    setColumnWidth(PropertyModel::Label, label);
    setColumnWidth(PropertyModel::Value, std::max(0, rest - label));
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
    QLinearGradient shade(0, 0, 0, band.height());
    shade.setColorAt(0, Look::BandTop);
    shade.setColorAt(1, Look::BandBottom);
    painter.fillRect(band, shade);
    painter.fillRect(QRect(0, band.bottom(), band.width(), 1), Look::Line);
    DrawIcon(painter, band, SettingGroupIcon);
    painter.setFont(Look::Font(Look::Body, QFont::Bold));
    painter.setPen(Look::Ink);
    DrawLine(painter, band.adjusted(LabelLeft, 0, -Look::TextInset, 0), m_model.Row(0).label);
}

void CPropertyGroup::PaintRow(QPainter& painter, int row) const {
    const PropertyRow& property = m_model.Row(row);
    const QRect area = RowRect(row);
    if (row == CurrentRow() && hasFocus())
        painter.fillRect(area, Look::AccentTint);
    else if (row % 2 == 1)
        painter.fillRect(area, Look::Side);
    const QRect value = ValueRect(row);
    if (row == m_hoveredRow && m_model.IsEditable(row)) {
        painter.setPen(Look::AccentLine);
        painter.setBrush(Look::Paper);
        painter.drawRoundedRect(
            QRectF(value).adjusted(0.5, EditorInset + 0.5, -CellInset - 0.5, -EditorInset - 0.5),
            Look::CornerRadius, Look::CornerRadius);
    }
    DrawIcon(painter, area, SettingIcon);
    painter.setFont(Look::Font(Look::Small));
    painter.setPen(Look::Ink);
    DrawLine(painter,
             visualRect(m_model.index(row, PropertyModel::Label)).adjusted(CellInset, 0, -CellInset, 0),
             property.label);
    painter.setPen(property.readOnly || property.unread ? Look::Muted : Look::Ink);
    DrawLine(painter, value.adjusted(CellInset, 0, -2 * CellInset, 0), property.ShownValue());
}
