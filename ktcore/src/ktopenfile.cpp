#include "file.h"

#include <ktcore/ktopenfile.h>

std::FILE* KtOpenFile(const char* path)
{
    return base::OpenFile(path);
}
