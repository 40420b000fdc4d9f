#include "texts.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace plchost {
namespace {

/// An environment without a language, put back afterwards.
class EnvironmentLanguageTest : public testing::Test
{
protected:
    void SetUp() override
    {
        for (Variable& variable : m_variables) {
            const char* const value = std::getenv(variable.name);
            variable.value = value == nullptr ? "" : value;
            unsetenv(variable.name);
        }
    }

    void TearDown() override
    {
        for (const Variable& variable : m_variables) {
            setenv(variable.name, variable.value.c_str(), 1);
        }
    }

private:
    struct Variable
    {
        const char* name;
        std::string value;
    };

    Variable m_variables[3] = {{"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", ""}};
};

TEST_F(EnvironmentLanguageTest, IsEnglishWithoutAnyWord)
{
    EXPECT_STREQ(EnvironmentLanguage(), "en");
}

TEST_F(EnvironmentLanguageTest, IsGermanInAnyGermanCountry)
{
    setenv("LANG", "de_AT.UTF-8", 1);

    EXPECT_STREQ(EnvironmentLanguage(), "de");
}

TEST_F(EnvironmentLanguageTest, IsThatOfTheStrongestVariable)
{
    setenv("LANG", "de_DE.UTF-8", 1);
    setenv("LC_MESSAGES", "fr_FR.UTF-8", 1);

    EXPECT_STREQ(EnvironmentLanguage(), "en");
}

TEST(TextsIn, SpeaksGermanAndElseEnglish)
{
    EXPECT_STREQ(TextsIn("de").openDebugger, "Debugger öffnen");
    EXPECT_STREQ(TextsIn("en").openDebugger, "Open debugger");
    EXPECT_STREQ(TextsIn("").openDebugger, "Open debugger");
}

} // namespace
} // namespace plchost
