#include "file.h"

#include <ktcore/ktreplacefile.h>

bool KtReplaceFile(const wxString& path, const std::string& bytes)
{
    const auto name = path.fn_str();
    return name.data() != nullptr && base::ReplaceFile(name.data(), bytes);
}
