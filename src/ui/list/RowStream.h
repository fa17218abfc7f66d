#pragma once

#include "list/RowSet.h"

#include <mutex>

/// Rows on their way from a lane to a list: the lane puts them in, the UI thread looks at what has come so
/// far.
class RowStream {
public:
    virtual ~RowStream() = default;

    int Count() const {
        const std::lock_guard lock(m_mutex);
        return m_sealed.Count() + OpenCount();
    }

    /// All rows that have come so far, the first ones as they were given before.
    RowSet Rows() {
        const std::lock_guard lock(m_mutex);
        if (OpenCount() > 0)
            m_sealed.Append(Seal());
        return m_sealed;
    }

protected:
    // Under the mutex: of the records that stand in no block yet.
    virtual int OpenCount() const = 0;
    virtual std::shared_ptr<const RowBlock> Seal() = 0;

    mutable std::mutex m_mutex;
    RowSet m_sealed;
};
