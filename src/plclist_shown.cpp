#include "plclist_shown.h"

#include <algorithm>

void ShownColumn::Clear(std::size_t rows)
{
    m_rows.clear();
    m_rows.shrink_to_fit();
    m_rows.reserve(rows);
    m_texts.clear();
}

void ShownColumn::Append(const std::wstring& text)
{
    // Neighbours mostly show the same: one comparison instead of a search.
    const bool sameAsBefore = !m_rows.empty() && m_rows.back()->first == text;
    SharedText* shared = sameAsBefore ? m_rows.back() : Acquire(text);
    ++shared->second.rows;
    m_rows.push_back(shared);
}

bool ShownColumn::Replace(std::size_t row, const std::wstring& text)
{
    SharedText* former = m_rows[row];
    if (former->first == text) {
        return false;
    }
    m_rows[row] = Acquire(text);
    ++m_rows[row]->second.rows;
    Release(former);
    return true;
}

void ShownColumn::Remove(std::size_t first, std::size_t count)
{
    const auto begin = m_rows.begin() + static_cast<std::ptrdiff_t>(first);
    const auto end = begin + static_cast<std::ptrdiff_t>(count);
    std::for_each(begin, end, [this](SharedText* text) { Release(text); });
    m_rows.erase(begin, end);
}

int ShownColumn::Width(std::size_t row, const Measure& measure)
{
    return Width(*m_rows[row], measure);
}

int ShownColumn::MaxWidth(const Measure& measure)
{
    int widest = 0;
    for (SharedText& text : m_texts) {
        widest = std::max(widest, Width(text, measure));
    }
    return widest;
}

void ShownColumn::ForgetWidths()
{
    for (auto& [text, use] : m_texts) {
        use.width = notMeasured;
    }
}

int ShownColumn::Width(SharedText& text, const Measure& measure)
{
    auto& [letters, use] = text;
    if (use.width == notMeasured) {
        use.width = measure(letters);
    }
    return use.width;
}

ShownColumn::SharedText* ShownColumn::Acquire(const std::wstring& text)
{
    return &*m_texts.try_emplace(text).first;
}

void ShownColumn::Release(SharedText* text)
{
    if (--text->second.rows == 0) {
        m_texts.erase(text->first);
    }
}
