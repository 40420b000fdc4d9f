#pragma once

#include <wx/thread.h>

#include <memory>
#include <vector>

namespace literal {

/// The answer queue taken literally: an array of heap copies whose position 0 is removed by moving
/// all the others. Push and Pop: any thread.
template <typename T> class Queue
{
public:
    void Push(const T& value)
    {
        const wxMutexLocker lock(m_mutex);
        m_items.push_back(std::make_unique<T>(value));
    }

    /// @return false when the queue was empty; @p value is then unchanged.
    bool Pop(T& value)
    {
        const wxMutexLocker lock(m_mutex);
        if (m_items.empty()) {
            return false;
        }
        value = *m_items.front();
        m_items.erase(m_items.begin());
        return true;
    }

private:
    std::vector<std::unique_ptr<T>> m_items;
    wxMutex m_mutex;
};

} // namespace literal
