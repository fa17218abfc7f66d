#pragma once

#include "lanes/PageLoader.h"
#include "wizard/WizardPage.h"
#include "wizard/WizardTravel.h"

#include <QDialog>

class ProgressNote;
class QLabel;
class QPushButton;
class QStackedWidget;
class UserPrompts;
class WizardLine;
class WizardSteps;
struct Progress;

/// One of the requests that Finish sends.
struct WizardRequest {
    QString busy;        ///< what the line says meanwhile
    QByteArray identity; ///< what is sent: the same after a failure means that it need not be sent again
    std::function<QString(std::stop_token)> send; ///< on the lane; why it failed, empty when it went well
    bool failureInBox = false;
};

/// The frame of a wizard: steps, header, the page, the line below it, and the buttons. It owns its pages,
/// which share one draft that nothing is written from before Finish. Shown by `open()`; deletes itself when
/// closed, and says by `finished` whether it went to its end.
class CBrenPropertySheet : public QDialog {
    Q_OBJECT

public:
    CBrenPropertySheet(Reader& reader, UserPrompts& prompts, const QString& caption,
                       QWidget* parent = nullptr);
    ~CBrenPropertySheet() override;

    void AddPage(WizardPage* page);
    /// Takes effect for the way from the present page on.
    void LeaveOut(const WizardPage& page, bool leftOut);
    WizardPage* CurrentPage() const;
    /// What a link to an earlier page does: as Back pressed until that one is reached. Nothing from there on,
    /// while something is written, and for a page that is left out.
    void GoBackTo(const WizardPage& page);

    // What a page calls.

    /// From `Leave`: on to the next page, or the end of the wizard.
    void Pass();
    /// From `Leave`: stays, with what is wrong; without words, when the user has called it off.
    void Stay(const Refusal& refusal = {});

    /// Reads what the page shows. Next is off meanwhile. `apply` is `QString (const Loaded<Value>&)` and
    /// returns why the page could not be filled, which is shown and can be tried again; it is not called when
    /// the page's inputs have become other ones, or a newer read of the page has begun.
    template <typename Fetch, typename Apply>
    void Read(WizardPage& page, Lane lane, const QString& busy, Fetch fetch, Apply apply,
              std::shared_ptr<const ProgressNote> note = {}) {
        const int number = BeginRead(page, busy, std::move(note));
        LoaderOf(page).Load(lane, std::move(fetch),
                            [this, &page, number, inputs = page.Inputs(),
                             apply = std::move(apply)](const auto& loaded) mutable {
                                if (!IsPresentRead(page, number, inputs))
                                    return;
                                if (loaded.outcome == LoadOutcome::Cancelled)
                                    return EndRead(page, {}, false);
                                const Filling filling(*this);
                                EndRead(page, apply(loaded), true);
                            });
    }

    /// From `Leave`: asks before going on. An edit, Back and Cancel give it up; `judge`, which is
    /// `void (const Loaded<Value>&)`, then is not called. It ends in Pass, Stay, or a further Check or
    /// Commit.
    template <typename Fetch, typename Judge>
    void Check(Lane lane, const QString& busy, Fetch fetch, Judge judge,
               std::shared_ptr<const ProgressNote> note = {}) {
        BeginWork(busy, std::move(note));
        m_work->Load(lane, std::move(fetch),
                     [this, attempt = m_attempt, judge = std::move(judge)](const auto& loaded) mutable {
                         if (attempt != m_attempt)
                             return;
                         if (loaded.outcome == LoadOutcome::Cancelled)
                             return Stay();
                         judge(loaded);
                     });
    }

    /// From `Leave` of the last page: writes. Nothing is pressed, closed or edited until `judge` has ended
    /// it.
    template <typename Fetch, typename Judge>
    void Commit(Lane lane, const QString& busy, Fetch fetch, Judge judge,
                std::shared_ptr<const ProgressNote> note = {}) {
        BeginCommit(busy, std::move(note));
        m_work->Command(lane, std::move(fetch),
                        [this, attempt = m_attempt, judge = std::move(judge)](const auto& loaded) mutable {
                            if (attempt == m_attempt)
                                judge(loaded);
                        });
    }

    /// From `Leave` of the last page: sends the requests in turn and passes. After a failure it stays, and
    /// the next time begins at the first request that is another one or was not done.
    void SendAll(Lane lane, std::vector<WizardRequest> requests);

    /// While a Check or Commit runs.
    void ShowProgress(const Progress& progress);

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    struct Entry {
        WizardPage* page = nullptr;
        std::unique_ptr<PageLoader> loader;
        std::optional<QVariantList> filledFrom; ///< none: to be filled when it is reached
        int reads = 0;
        QString busy; ///< not empty while it is read
        std::shared_ptr<const ProgressNote> note;
        QString failure; ///< of the last read
    };

    /// What pages set while they are filled is no input of the user.
    class Filling {
    public:
        explicit Filling(CBrenPropertySheet& sheet) : m_sheet(sheet) { ++m_sheet.m_filling; }
        ~Filling() { --m_sheet.m_filling; }
        Filling(const Filling&) = delete;
        Filling& operator=(const Filling&) = delete;

    private:
        CBrenPropertySheet& m_sheet;
    };

    struct Sending;

    Entry& EntryOf(const WizardPage& page);
    PageLoader& LoaderOf(const WizardPage& page) { return *EntryOf(page).loader; }
    Entry& Current();
    /// Whether the page can be left: it has been read, and its fields hold what they must.
    bool IsReady();

    int BeginRead(WizardPage& page, const QString& busy, std::shared_ptr<const ProgressNote> note);
    bool IsPresentRead(const WizardPage& page, int number, const QVariantList& inputs);
    void EndRead(WizardPage& page, const QString& failure, bool ended);
    void BeginWork(const QString& busy, std::shared_ptr<const ProgressNote> note);
    void BeginCommit(const QString& busy, std::shared_ptr<const ProgressNote> note);
    void SendNext(const std::shared_ptr<Sending>& sending);

    QWidget* MakeContent();
    QWidget* MakeFoot();
    void Advance();
    /// Until that number, or one before it, is reached.
    void StepBack(int page);
    void EnterPage();
    void FillCurrent();
    void TryAgain();
    void GiveCheckUp();
    void OnEdited(WizardPage* page);
    void AskToDiscard();
    void Refresh();
    void ShowSteps();
    void ShowLine();
    void HoldFocus(const WizardTravel::Buttons& allowed);
    void ReleaseFocus(QWidget* wanted);
    void FocusPage();
    /// The page comes before the buttons, also with fields that it has made by now.
    void OrderTabs();

    Reader& m_reader;
    UserPrompts& m_prompts;
    WizardTravel m_travel;
    std::vector<Entry> m_entries;
    std::unique_ptr<PageLoader> m_work;
    int m_attempt = 0; ///< of leaving a page; what belongs to an earlier one comes too late
    int m_filling = 0;
    bool m_opened = false;
    bool m_entered = false; ///< the user has entered something
    bool m_asking = false;
    QString m_busy; ///< what a Check or Commit does
    std::shared_ptr<const ProgressNote> m_note;
    QString m_said; ///< why it stayed; kept until the next try
    std::vector<QByteArray> m_sent;
    QPointer<QWidget> m_heldFocus; ///< had the focus before work began

    WizardSteps* m_steps;
    QLabel* m_title;
    QLabel* m_subtitle;
    QStackedWidget* m_pages;
    WizardLine* m_line;
    QPushButton* m_back;
    QPushButton* m_main;
    QPushButton* m_cancel;
};
