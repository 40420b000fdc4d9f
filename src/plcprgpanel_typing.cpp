#include "plcprgpanel_typing.h"

#include <algorithm>
#include <cwctype>

namespace {

bool AreAlike(wchar_t one, wchar_t other)
{
    return std::towlower(static_cast<std::wint_t>(one)) ==
           std::towlower(static_cast<std::wint_t>(other));
}

bool BeginsWith(const std::wstring& name, const std::wstring& beginning)
{
    return name.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), name.begin(), AreAlike);
}

/// Searches from @p start to the end, then from the first name on.
std::optional<std::size_t>
FindFrom(std::size_t start, const std::vector<std::wstring>& names, const std::wstring& beginning)
{
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::size_t position = (start + i) % names.size();
        if (BeginsWith(names[position], beginning)) {
            return position;
        }
    }
    return std::nullopt;
}

} // namespace

std::optional<std::size_t> TypedName::Add(
    wchar_t letter, std::uint32_t timeMs, const std::vector<std::wstring>& names, int selected)
{
    const bool isSoon = timeMs - m_lastMs <= static_cast<std::uint32_t>(typingPauseMs);
    m_lastMs = timeMs;
    const bool isDigit = std::iswdigit(static_cast<std::wint_t>(letter)) != 0;
    if (m_beginning.size() == 1 && AreAlike(m_beginning.front(), letter) && !isDigit) {
        const int next = selected + 1;
        return FindFrom(static_cast<std::size_t>(next), names, m_beginning);
    }
    if (!isSoon) {
        m_beginning.clear();
    }
    m_beginning += letter;
    return FindFrom(0, names, m_beginning);
}
