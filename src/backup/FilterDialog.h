#pragma once

#include "plan/BackupFigures.h"

#include <QDialog>

#include <functional>

class CheckList;
class CountView;
class NoticeLine;
class QCheckBox;
class QGridLayout;
class QLayout;
class QLabel;
class QLineEdit;

/// A row of the filter's file types.
struct FileTypeRow {
    QString name;
    QString types; ///< empty: every file
    bool ticked = false;

    bool operator==(const FileTypeRow&) const = default;
};

/// What stands in the fields of the filter dialog; at first the usual.
struct FilterChoice {
    std::vector<FileTypeRow> rows = UsualRows();
    bool excludesTypes = true;
    QString excludedTypes = BackupFilter().excludedTypes;
    bool excludesFiles = true;
    QString excludedFiles = BackupFilter().excludedFiles;
    bool skipSystem = true;
    bool skipHidden = true;

    static std::vector<FileTypeRow> UsualRows();
    bool operator==(const FilterChoice&) const = default;
};

BackupFilter FilterOf(const FilterChoice& choice);

/// Chooses which files of the folders are taken. Shows what each rule leaves out, as far as it was counted
/// for the choice that it opens with.
class FilterDialog : public QDialog {
    Q_OBJECT

public:
    FilterDialog(const FilterChoice& choice, const BackupFigures& figures, QWidget* parent = nullptr);

    FilterChoice Choice() const;
    /// Later figures, of the same choice as the first.
    void ShowFigures(const BackupFigures& figures);
    void accept() override;

private:
    struct Rule {
        BackupRule rule;
        QCheckBox* box;
        QLineEdit* text; ///< none: the box is all
        QLabel* leftOut;
    };

    void AddType(const FileTypeRow& row);
    void AskType();
    QLayout* MakeTypes();
    QLayout* MakeRules(const FilterChoice& choice);
    void AddRule(QGridLayout& grid, BackupRule rule, const QString& caption, bool ticked,
                 const QString* text);
    const Rule& RuleOf(BackupRule rule) const;
    void Stay(const QString& why, QWidget* field);

    std::vector<FileTypeRow> m_rows; ///< their ticks are the list's
    CheckList* m_types;
    QLabel* m_typesLeftOut;
    std::vector<Rule> m_rules;
    NoticeLine* m_notice;
};

/// Asks for a further row of file types; it is taken only with a name and extensions.
class CAddFileType : public QDialog {
    Q_OBJECT

public:
    explicit CAddFileType(QWidget* parent = nullptr);

    /// Ticked. Empty texts where they were not entered.
    FileTypeRow Row() const;
    void accept() override;

private:
    QLineEdit* m_name;
    QLineEdit* m_types;
    NoticeLine* m_notice;
};

/// Shows the dialog over a window. `count` counts for the choice and may be null; `accepted` is called with
/// another choice, and not once `over` is gone.
void OpenFilterDialog(QWidget* over, const FilterChoice& choice, CountView* count,
                      std::function<void(const FilterChoice&)> accepted);
