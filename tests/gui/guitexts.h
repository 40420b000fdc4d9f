#pragma once

#include "numberedtexts.h"
#include "plcintlang.h"
#include "tempdir.h"

#include <map>
#include <set>
#include <string>

/// Makes the plug-in's classes in this process show numbered texts, see WriteNumberedTexts().
class NumberedTexts
{
public:
    NumberedTexts() { Change({}); }

    /// Sets the language anew, with other texts.
    void Change(const std::map<int, std::string>& changes, const std::set<int>& missing = {})
    {
        WriteNumberedTexts(m_dir.Path(), changes, missing);
        IntlLangImp().SetFilePath(wxString(m_dir.Path().c_str()).wc_str());
        IntlLangImp().SetLanguage(wxString(numberedLanguage).wc_str());
    }

private:
    TempDir m_dir;
};
