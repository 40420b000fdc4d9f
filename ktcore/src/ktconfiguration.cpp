#include "inifile.h"

#include <ktcore/ktconfiguration.h>

KtConfiguration::KtConfiguration(
    const wxString& section, const wxString& subsection, const wxString& file)
    : m_group('/' + section), m_file(AbsolutePath(file))
{
    if (!subsection.empty()) {
        m_group += '/' + subsection;
    }
}

bool KtConfiguration::Get(const wxString& key, wxString& value) const
{
    IniFile file(m_file);
    return file.Content().Read(m_group + '/' + key, &value);
}

bool KtConfiguration::Set(const wxString& key, const wxString& value)
{
    return IniFile(m_file).SaveWith(m_group + '/' + key, value);
}
