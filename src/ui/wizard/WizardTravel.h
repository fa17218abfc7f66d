#pragma once

#include <vector>

/// Where a wizard is and what may be pressed. Knows no widget. Pages are numbered from 0 in their order.
class WizardTravel {
public:
    enum class Phase {
        Idle,
        Checking,   ///< the page is being checked: an edit, Back and Cancel end that
        Committing, ///< something is being written: it runs to its end
    };
    enum class Mark { Done, Now, ToCome, LeftOut };

    struct Buttons {
        bool back = false;
        bool main = false; ///< Next, or Finish on the last page
        bool cancel = false;

        bool operator==(const Buttons&) const = default;
    };

    void Add() { m_leftOut.push_back(false); }
    /// A page that is left out is passed over in both directions; not the present one.
    void LeaveOut(int page, bool leftOut);

    int Current() const { return m_current; }
    bool IsFirst() const { return Neighbour(-1) < 0; }
    bool IsLast() const { return Neighbour(+1) < 0; }
    Mark MarkOf(int page) const;
    Phase Now() const { return m_phase; }
    /// `ready`: the present page can be left; `escape`: what is being written can be called off.
    Buttons Allowed(bool ready, bool escape) const;

    /// Starts to check the page; false while something is under way.
    bool Begin();
    /// From the check on to writing.
    void Commit();
    /// Ends the check or the writing where it is.
    void Stay() { m_phase = Phase::Idle; }
    /// Ends it well and goes to the next page; false on the last one: the wizard has ended.
    bool Pass();
    /// Gives a check up and goes back; false on the first page and while something is written.
    bool Back();

private:
    /// The next page in a direction that is not left out, or -1.
    int Neighbour(int step) const;

    std::vector<bool> m_leftOut;
    int m_current = 0;
    Phase m_phase = Phase::Idle;
};
