#pragma once

#include <QWidget>

class QDateEdit;
class QFormLayout;
class QLabel;
class QLocale;
class QTimeEdit;

/// Fields with their labels, one below the other, each with a line below it for a remark. Names its fields
/// for readers, and tells of every change that a user makes in one.
class Form : public QWidget {
    Q_OBJECT

public:
    enum class Need { Optional, Required };

    explicit Form(QWidget* parent = nullptr);

    /// A text line, password, path, number, choice, date, time, box or several lines; the form owns it. The
    /// label may name a key by "&"; one that is data is given through `PlainLabel`.
    template <typename Field>
    Field* Add(const QString& label, Field* field, Need need = Need::Optional, const QString& remark = {}) {
        AddRow(label, field, need, remark);
        return field;
    }
    /// A widget over the whole width.
    void AddWide(QWidget* widget);

    /// What stands below the field; nothing when empty.
    void SetRemark(const QWidget& field, const QString& remark);
    void SetRowShown(QWidget& field, bool shown);

    static QString PlainLabel(const QString& text);

signals:
    void Edited();

private:
    struct Row {
        QWidget* field;
        QWidget* body; ///< the field and its remark
        QLabel* remark;
    };

    void AddRow(const QString& label, QWidget* field, Need need, const QString& remark);
    void Watch(QWidget* field);
    const Row& RowOf(const QWidget& field) const;

    QFormLayout* m_layout;
    std::vector<Row> m_rows;
};

/// The form of a date in that language with all four digits of the year, and of a time to the second.
QString DateForm(const QLocale& locale);
QString TimeForm(const QLocale& locale);

/// A date with its calendar, and a time, in these forms. Both take what is entered as it stands, also where
/// the computer's clock skips it.
QDateEdit* MakeDateField();
QTimeEdit* MakeTimeField();
