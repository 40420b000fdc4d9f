#include "ini.h"

#include <gtest/gtest.h>

#include <string>

// What a value is, in files of all kinds: see test_ini_readers.cpp.

namespace {

std::string WithLanguage(const std::string& text, const std::string& language)
{
    return base::WithIniValue(text, "Settings", "Language", language);
}

TEST(IniValue, IsTheLastOneOfItsSectionInAnyCase)
{
    const char* text = "Language=no\n[Other]\nLanguage=no\n[settings]\n language = de\r\n"
                       "LANGUAGE=en\n[Later]\nLanguage=no\n";

    EXPECT_EQ(base::IniValue(text, "Settings", "Language"), "en");
    EXPECT_EQ(base::IniValue(text, "", "Language"), "no");
}

TEST(IniValue, IsMissingWithoutItsSectionOrKey)
{
    EXPECT_FALSE(base::IniValue("", "Settings", "Language"));
    EXPECT_FALSE(base::IniValue("Language=de\n", "Settings", "Language"));
    EXPECT_FALSE(
        base::IniValue("[Settings]\nLanguagePath=x\n;Language=de\n", "Settings", "Language"));
}

TEST(WithIniValue, ReplacesItsLineAndNoOther)
{
    EXPECT_EQ(
        WithLanguage(
            "; mine\r\n[Settings]\nLanguage = de\n\n  odd line\nX=\\\n[Last]\nLanguage=x", "en"),
        "; mine\r\n[Settings]\nLanguage=en\n\n  odd line\nX=\\\n[Last]\nLanguage=x");
}

TEST(WithIniValue, ReplacesEveryValueOfItsKey)
{
    EXPECT_EQ(
        WithLanguage("[Settings]\nLanguage=de\n[A]\n[Settings]\nlanguage=fr", "en"),
        "[Settings]\nLanguage=en\n[A]\n[Settings]\nLanguage=en\n");
}

TEST(WithIniValue, AddsAMissingKeyToItsSection)
{
    EXPECT_EQ(
        WithLanguage("[A]\nB=1\n[Settings]\nX=1\n[C]\n", "de"),
        "[A]\nB=1\n[Settings]\nLanguage=de\nX=1\n[C]\n");
    EXPECT_EQ(WithLanguage("[Settings]", "de"), "[Settings]\nLanguage=de\n");
}

TEST(WithIniValue, AddsAMissingSectionAtTheEnd)
{
    EXPECT_EQ(WithLanguage("", "de"), "[Settings]\nLanguage=de\n");
    EXPECT_EQ(WithLanguage("[A]\nB=1", "de"), "[A]\nB=1\n[Settings]\nLanguage=de\n");
}

TEST(WithIniValue, LeavesAFixedKeyAsItIs)
{
    EXPECT_EQ(WithLanguage("[Settings]\n!Language=de\n", "en"), "[Settings]\n!Language=de\n");
}

} // namespace
