#include "projectfile.h"

std::string ProjectFile(const std::string& path)
{
    return PROJECT_DIR "/" + path;
}
