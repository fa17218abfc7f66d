#pragma once

#include <QPointer>
#include <QVariantList>
#include <QWidget>

class CBrenPropertySheet;

/// Why a wizard stays where it is.
struct Refusal {
    QString why = {};             ///< plain text
    QPointer<QWidget> field = {}; ///< gets the focus; none: the one that had it
    bool inBox = false;           ///< told in a message box first
};

/// What stands below a page: what was chosen on it so far.
struct PageLine {
    QString lead = {}; ///< emphasised
    QString rest = {};
};

/// One page of a wizard. It knows its fields and the wizard's draft, not the buttons.
class WizardPage : public QWidget {
    Q_OBJECT

public:
    WizardPage(QString title, QString subtitle);

    const QString& Title() const { return m_title; }
    const QString& Subtitle() const { return m_subtitle; }

    /// What of the draft this page shows or derives its proposals from. Nothing: the page is filled once.
    virtual QVariantList Inputs() const { return {}; }
    /// The page is reached by Next and its inputs are other ones than when it was last filled, or that
    /// failed. What takes time is read by the sheet's `Read`. Must keep what the user entered where it still
    /// holds.
    virtual void Fill() {}
    /// Whether Next can be pressed, from the fields alone. What needs words is said by `Leave` instead.
    virtual bool IsComplete() const { return true; }
    /// Next or Finish: puts the fields into the draft and ends in the sheet's Pass or Stay, at once or after
    /// Check or Commit.
    virtual void Leave();
    /// Cancel while this page's Commit runs; see `CanEscape`.
    virtual void Escape() {}
    virtual bool CanEscape() const { return false; }
    virtual PageLine Line() const { return {}; }

signals:
    /// The user has changed something: asks `IsComplete` and `Line` again, gives a check under way up.
    void Edited();

protected:
    /// Once the page has been added to a sheet.
    CBrenPropertySheet& Sheet() const { return *m_sheet; }
    /// Fills the page with the content, which scrolls where it has no room.
    void SetScrolled(QWidget* content);

private:
    friend class CBrenPropertySheet;

    QString m_title;
    QString m_subtitle;
    CBrenPropertySheet* m_sheet = nullptr;
};
