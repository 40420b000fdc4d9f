#pragma once

#include "ktarray.h"

#include <wx/thread.h>

#include <memory>
#include <utility>

/// A first-in-first-out queue of values that any thread may fill and any thread may empty.
/// All: any thread. Destroying the queue deletes what it still holds.
template <typename T> class KtValueQueue : protected virtual KtValueArray<T>
{
public:
    void Push(const T& value)
    {
        Push(value, [](KtValueArray<T>&) { return KtValueArray<T>(); });
    }

    /// Pushes a value, and has @p thinOut look at all that the queue then holds.
    /// @param thinOut called under the lock with the array, the oldest value first; returns what it
    ///        has taken out.
    template <typename ThinOut> void Push(const T& value, ThinOut thinOut)
    {
        {
            wxMutexLocker lock(m_mutex); // held for this push only
            if (!m_spare.IsEmpty()) {
                std::unique_ptr<T> copy = m_spare.TakeLast();
                *copy = value;
                Append(std::move(copy), thinOut);
                return;
            }
        }
        auto copy = std::make_unique<T>(value);
        wxMutexLocker lock(m_mutex); // held for this push only, released also when growing fails
        Append(std::move(copy), thinOut);
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

    /// Hands values back whose memory the next pushes may use again; what they did not use of those
    /// handed back before is deleted. So threads that fill the queue without end, and the one that
    /// empties it, do not wait for each other in the allocator.
    void GiveBack(KtValueArray<T> used)
    {
        wxMutexLocker lock(m_mutex); // held for an exchange of pointers
        std::swap(m_spare, used);
    } // the lock is free again before what is left is deleted

    /// Deletes all values; from now on pushes keep nothing.
    void Close()
    {
        KtValueArray<T> all;
        KtValueArray<T> spare;
        wxMutexLocker lock(m_mutex); // held for an exchange of pointers
        m_closed = true;
        std::swap(static_cast<KtValueArray<T>&>(*this), all);
        std::swap(m_spare, spare);
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
    /// For callers that hold the lock.
    template <typename ThinOut> void Append(std::unique_ptr<T> copy, ThinOut& thinOut)
    {
        if (!m_closed) {
            this->AddOwned(std::move(copy));
            m_spare.Append(thinOut(static_cast<KtValueArray<T>&>(*this)));
        }
    }

    wxMutex m_mutex;
    KtValueArray<T> m_spare; ///< Values of no meaning, for their memory.
    bool m_closed = false;
};
