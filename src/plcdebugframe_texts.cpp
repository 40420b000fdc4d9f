#include "plcdebugframe_texts.h"

wxString StartDirectory(wxString pathPrefix)
{
    if (pathPrefix.EndsWith("/")) {
        pathPrefix.RemoveLast();
    }
    const std::size_t slash = pathPrefix.rfind('/');
    return slash == wxString::npos ? pathPrefix : pathPrefix.Left(slash);
}

wxString MenuLabel(const wxString& text)
{
    return text.empty() ? wxString(" ") : text;
}

wxString ItemLabel(const wxString& label, const wxString& acceleratorLetter)
{
    if (acceleratorLetter.empty() || acceleratorLetter == "...") {
        return MenuLabel(label);
    }
    return MenuLabel(label) + "\tCtrl-" + acceleratorLetter;
}
