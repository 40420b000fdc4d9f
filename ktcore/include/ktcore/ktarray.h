#pragma once

#include <cstddef>
#include <iterator>
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

    /// Takes the last element out.
    /// @pre not empty
    T TakeLast()
    {
        T last = std::move(m_items.back());
        m_items.pop_back();
        return last;
    }

    /// Takes the first elements out. @param count GetCount() at the most.
    KtArray TakeFirst(std::size_t count)
    {
        KtArray first;
        if (count == GetCount()) {
            std::swap(first, *this);
        } else {
            const auto end = At(m_gap + count);
            first.m_items.assign(std::make_move_iterator(At(m_gap)), std::make_move_iterator(end));
            m_items.erase(m_items.begin(), end);
            m_gap = 0;
        }
        return first;
    }

    /// Takes out every element of which @p goes says so, asked from the last element to the first.
    /// @return them, the last one first. The others keep their order.
    template <typename Goes> KtArray TakeIf(Goes goes)
    {
        KtArray taken;
        taken.m_items.reserve(GetCount()); // nothing may fail once elements are on their way
        auto stays = m_items.end();
        for (auto item = m_items.end(); item != At(m_gap);) {
            --item;
            if (goes(std::as_const(*item))) {
                taken.m_items.push_back(std::move(*item));
            } else if (--stays != item) {
                *stays = std::move(*item);
            }
        }
        m_items.erase(m_items.begin(), stays);
        m_gap = 0;
        return taken;
    }

    /// Moves all elements of another array behind those of this one.
    void Append(KtArray&& other)
    {
        if (IsEmpty()) {
            *this = std::move(other);
        } else {
            m_items.insert(
                m_items.end(),
                std::make_move_iterator(other.At(other.m_gap)),
                std::make_move_iterator(other.m_items.end()));
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
    KtValueArray() = default;

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

    // As those of KtArray; no element is copied or moves in memory.

    std::unique_ptr<T> TakeLast() { return m_items.TakeLast(); }

    KtValueArray TakeFirst(std::size_t count) { return KtValueArray(m_items.TakeFirst(count)); }

    template <typename Goes> KtValueArray TakeIf(Goes goes)
    {
        return KtValueArray(m_items.TakeIf([&goes](const auto& item) { return goes(*item); }));
    }

    void Append(KtValueArray&& other) { m_items.Append(std::move(other.m_items)); }

private:
    explicit KtValueArray(KtArray<std::unique_ptr<T>> items) : m_items(std::move(items)) {}

    KtArray<std::unique_ptr<T>> m_items;
};
