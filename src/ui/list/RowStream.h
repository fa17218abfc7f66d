#pragma once

#include "list/ListRow.h"

#include <cstddef>
#include <mutex>
#include <vector>

/// Rows on their way from a lane to a list: the lane puts them in, the UI thread takes what has come so far.
class RowStream {
public:
    void Put(ListRow row) {
        const std::lock_guard lock(m_mutex);
        m_rows.push_back(std::move(row));
    }

    std::size_t WaitingCount() const {
        const std::lock_guard lock(m_mutex);
        return m_rows.size() - m_taken;
    }

    /// The rows that were not taken yet.
    std::vector<ListRow> Take() {
        const std::lock_guard lock(m_mutex);
        const auto first = m_rows.begin() + static_cast<std::ptrdiff_t>(m_taken);
        m_taken = m_rows.size();
        return {first, m_rows.end()};
    }

    /// All rows, once none comes any more.
    const std::vector<ListRow>& All() const { return m_rows; }

private:
    mutable std::mutex m_mutex;
    std::vector<ListRow> m_rows;
    std::size_t m_taken = 0;
};
