#include "wizard/WizardTravel.h"

void WizardTravel::LeaveOut(int page, bool leftOut) {
    if (page != m_current)
        m_leftOut.at(static_cast<std::size_t>(page)) = leftOut;
}

int WizardTravel::Neighbour(int step) const {
    const int count = static_cast<int>(m_leftOut.size());
    for (int page = m_current + step; page >= 0 && page < count; page += step)
        if (!m_leftOut[static_cast<std::size_t>(page)])
            return page;
    return -1;
}

WizardTravel::Mark WizardTravel::MarkOf(int page) const {
    if (page == m_current)
        return Mark::Now;
    if (m_leftOut.at(static_cast<std::size_t>(page)))
        return Mark::LeftOut;
    return page < m_current ? Mark::Done : Mark::ToCome;
}

WizardTravel::Buttons WizardTravel::Allowed(bool ready, bool escape) const {
    switch (m_phase) {
    case Phase::Idle:
        return {!IsFirst(), ready, true};
    case Phase::Checking:
        return {!IsFirst(), false, true};
    case Phase::Committing:
        break;
    }
    return {false, false, escape};
}

bool WizardTravel::Begin() {
    if (m_phase != Phase::Idle)
        return false;
    m_phase = Phase::Checking;
    return true;
}

void WizardTravel::Commit() {
    m_phase = Phase::Committing;
}

bool WizardTravel::Pass() {
    m_phase = Phase::Idle;
    const int next = Neighbour(+1);
    if (next < 0)
        return false;
    m_current = next;
    return true;
}

bool WizardTravel::Back() {
    const int previous = Neighbour(-1);
    if (previous < 0 || m_phase == Phase::Committing)
        return false;
    m_phase = Phase::Idle;
    m_current = previous;
    return true;
}
