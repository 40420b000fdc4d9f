#pragma once

#include "numberedtexts.h"
#include "plcdebugvar.h"
#include "tempdir.h"

#include <gtest/gtest.h>

#include <clocale>
#include <cstring>

inline PlcDebugVar Operand(eVarFormat format, eVarSize size, std::int32_t value = 0)
{
    PlcDebugVar var;
    var.format = format;
    var.size = size;
    var.value = value;
    return var;
}

inline std::int32_t BitsOf(float number)
{
    std::int32_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    return bits;
}

/// Values read and print the same whatever locale the host has set.
class DebugVarValue : public testing::TestWithParam<const char*>
{
protected:
    void SetUp() override
    {
        ASSERT_NE(std::setlocale(LC_ALL, GetParam()), nullptr) << "no locale " << GetParam();
        WriteNumberedTexts(dir.Path());
        IntlLangImp().SetFilePath(wxString(dir.Path().c_str()).wc_str());
        IntlLangImp().SetLanguage(wxString(numberedLanguage).wc_str());
    }

    void TearDown() override { std::setlocale(LC_ALL, "C"); }

    TempDir dir;
};
