#include "plcprgpanel_typing.h"

#include <gtest/gtest.h>

namespace {

using Names = std::vector<std::wstring>;

const Names program = {L"OB1", L"FB1", L"FB5", L"FB57", L"fb6", L"PB1", L"Fx"};

/// A selector of blocks, in which each found block becomes the selected one.
class Selector
{
public:
    explicit Selector(Names names = program) : m_names(std::move(names)) {}

    /// Types letters, each @p gapMs after the one before.
    /// @return the name selected then.
    std::wstring Type(const std::wstring& letters, std::uint32_t gapMs = 100)
    {
        for (const wchar_t letter : letters) {
            m_nowMs += gapMs;
            if (const auto found = m_typed.Add(letter, m_nowMs, m_names, m_selected)) {
                m_selected = static_cast<int>(*found);
            }
        }
        return m_names.at(static_cast<std::size_t>(m_selected));
    }

private:
    Names m_names;
    TypedName m_typed;
    int m_selected = 0;
    std::uint32_t m_nowMs = 5000;
};

} // namespace

TEST(TypedName, SelectsTheFirstBlockThatBeginsSo)
{
    Selector selector;

    EXPECT_EQ(selector.Type(L"F"), L"FB1");
    EXPECT_EQ(selector.Type(L"B"), L"FB1");
    EXPECT_EQ(selector.Type(L"5"), L"FB5");
    EXPECT_EQ(selector.Type(L"7"), L"FB57");
}

TEST(TypedName, TakesLargeAndSmallLettersForTheSame)
{
    EXPECT_EQ(Selector().Type(L"fB57"), L"FB57");
    EXPECT_EQ(Selector().Type(L"FB6"), L"fb6");
}

TEST(TypedName, BeginsAnewAfterAPause)
{
    Selector selector;
    selector.Type(L"FB");

    EXPECT_EQ(selector.Type(L"P", typingPauseMs + 1), L"PB1");
    EXPECT_EQ(selector.Type(L"O", typingPauseMs), L"PB1") << "PO is no block's beginning";
    EXPECT_EQ(selector.Type(L"O", typingPauseMs + 1), L"OB1");
}

TEST(TypedName, OfTheSameSingleLetterAgainSelectsTheNextBlockThatBeginsWithIt)
{
    Selector selector;

    EXPECT_EQ(selector.Type(L"F"), L"FB1");
    EXPECT_EQ(selector.Type(L"f"), L"FB5");
    EXPECT_EQ(selector.Type(L"F", 10 * typingPauseMs), L"FB57");
    EXPECT_EQ(selector.Type(L"FFF"), L"FB1") << "past fb6 and Fx from the end to the start";
    EXPECT_EQ(selector.Type(L"B57"), L"FB57");
    EXPECT_EQ(selector.Type(L"F", 10 * typingPauseMs), L"FB1") << "a single letter after a name";
}

TEST(TypedName, TakesTheSameDigitAgainForAPartOfTheName)
{
    EXPECT_EQ(Selector({L"x", L"1", L"12", L"11"}).Type(L"11"), L"11");
}

TEST(TypedName, OfNoBlockSelectsNothing)
{
    Selector selector;

    EXPECT_EQ(selector.Type(L"X"), L"OB1");
    EXPECT_EQ(selector.Type(L"F"), L"OB1") << "XF";
    EXPECT_FALSE(TypedName().Add(L'F', 0, {}, -1));
}

TEST(TypedName, IsFoundWithoutASelectedBlockAndAcrossTheEndOfTheClock)
{
    TypedName typed;
    EXPECT_EQ(typed.Add(L'F', 0xFFFFFF00, program, -1), 1U);
    EXPECT_EQ(typed.Add(L'x', 0x00000010, program, 1), 6U);
}
