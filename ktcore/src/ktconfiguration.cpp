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
    const wxString name = m_group + '/' + key;
    IniFile file(m_file);
    wxString taken;
    // The toolkit reports success also for a key that the file marks as fixed ("!Key=").
    return file.Content().Write(name, value) && file.Content().Read(name, &taken) &&
           taken == value && file.Save();
}
