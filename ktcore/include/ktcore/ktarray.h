#pragma once

#include <cstddef>
#include <memory>
#include <utility>
#include <vector>

// Growable arrays of the core library. No locks: one thread at a time.

/// A growable array whose front is removed as cheaply as its end: a removed front leaves a gap
/// before the first element, which is closed once it is as large as what is left.
template <typename T> class KtArray
{
public:
    std::size_t GetCount() const { return m_items.size() - m_gap; }

    bool IsEmpty() const { return GetCount() == 0; }

    /// @param position below GetCount().
    const T& operator[](std::size_t position) const { return m_items[m_gap + position]; }

    void Add(T item) { m_items.push_back(std::move(item)); }

    /// @param position below GetCount().
    void RemoveAt(std::size_t position)
    {
        if (position == 0) {
            RemoveFront();
        } else {
            m_items.erase(At(m_gap + position));
        }
    }

private:
    auto At(std::size_t index) { return m_items.begin() + static_cast<std::ptrdiff_t>(index); }

    void RemoveFront()
    {
        m_items[m_gap] = T();
        ++m_gap;
        if (m_gap * 2 >= m_items.size()) {
            m_items.erase(m_items.begin(), At(m_gap));
            m_gap = 0;
        }
    }

    std::vector<T> m_items;
    std::size_t m_gap = 0; ///< Elements at the start of m_items that are removed already.
};

/// An array of values of a fixed size, each a heap copy that the array owns.
template <typename T> class KtValueArray
{
public:
    std::size_t GetCount() const { return m_items.GetCount(); }

    bool IsEmpty() const { return m_items.IsEmpty(); }

    /// @param position below GetCount().
    const T& operator[](std::size_t position) const { return *m_items[position]; }

    /// Appends a heap copy of @p value.
    void Add(const T& value) { AddOwned(std::make_unique<T>(value)); }

    /// Appends a heap object and takes it over.
    void AddOwned(std::unique_ptr<T> item) { m_items.Add(std::move(item)); }

    /// Deletes one element and removes its position.
    /// @param position below GetCount().
    void RemoveAt(std::size_t position) { m_items.RemoveAt(position); }

private:
    KtArray<std::unique_ptr<T>> m_items;
};
