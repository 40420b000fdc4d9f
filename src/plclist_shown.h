#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <unordered_map>
#include <vector>

/// What the cells of one column show. Each different text is kept once, with the number of its
/// rows: a program listing has thousands of rows and few different states and values, so the widest
/// text is found without looking at every row. No windows. One thread at a time.
class ShownColumn
{
public:
    /// @return the width of a text in pixels.
    using Measure = std::function<int(const std::wstring&)>;

    /// Removes all rows, and makes room for @p rows to come.
    void Clear(std::size_t rows);

    /// Adds a row at the end.
    void Append(const std::wstring& text);

    /// @param row below the number of rows.
    /// @return true when the row showed another text before.
    bool Replace(std::size_t row, const std::wstring& text);

    /// Removes @p count rows from @p first on; they exist.
    void Remove(std::size_t first, std::size_t count);

    /// @param row below the number of rows.
    const std::wstring& Text(std::size_t row) const { return m_rows[row]->first; }

    std::size_t RowCount() const { return m_rows.size(); }

    /// @param row below the number of rows.
    /// @return the width of its text. A text is measured once.
    int Width(std::size_t row, const Measure& measure);

    /// @return the width of the widest text shown, 0 without rows. A text is measured once.
    int MaxWidth(const Measure& measure);

    /// Lets every text be measured anew.
    void ForgetWidths();

private:
    struct Use
    {
        std::size_t rows = 0;
        int width = notMeasured;
    };

    using Texts = std::unordered_map<std::wstring, Use>;
    using SharedText = Texts::value_type;

    static constexpr int notMeasured = -1;

    static int Width(SharedText& text, const Measure& measure);

    SharedText* Acquire(const std::wstring& text);
    void Release(SharedText* text);

    Texts m_texts;                   ///< Its elements stay where they are.
    std::vector<SharedText*> m_rows; ///< Elements of m_texts.
};
