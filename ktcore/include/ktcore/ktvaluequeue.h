#pragma once

#include "ktarray.h"

#include <wx/thread.h>

#include <memory>
#include <utility>

/// A first-in-first-out queue of values that any thread may fill and any thread may empty.
/// Push and Pop: any thread. Destroying the queue deletes what it still holds.
template <typename T> class KtValueQueue : private virtual KtValueArray<T>
{
public:
    void Push(const T& value)
    {
        auto copy = std::make_unique<T>(value);
        wxMutexLocker lock(m_mutex); // held for this push only, released also when growing fails
        this->AddOwned(std::move(copy));
    }

    /// Takes the oldest value.
    /// @return false when the queue was empty; @p value is then unchanged.
    bool Pop(T& value)
    {
        wxMutexLocker lock(m_mutex); // held for this pop only; no second lock is ever taken
        if (!doPeek(value)) {
            return false;
        }
        this->RemoveAt(0);
        return true;
    }

    /// Takes all values, the oldest first.
    KtValueArray<T> TakeAll()
    {
        KtValueArray<T> all;
        wxMutexLocker lock(m_mutex); // held for an exchange of pointers, however long the queue is
        std::swap(static_cast<KtValueArray<T>&>(*this), all);
        return all;
    }

    /// Copies the oldest value and leaves it in the queue. Takes no lock: for callers that hold it.
    /// @return false when the queue is empty; @p value is then unchanged.
    bool doPeek(T& value) const
    {
        if (this->IsEmpty()) {
            return false;
        }
        value = (*this)[0];
        return true;
    }

private:
    wxMutex m_mutex;
};
