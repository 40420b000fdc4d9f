#include "fuzz.h"

#include "tempdir.h"

#include <cstdio>
#include <cstdlib>

void Require(bool holds, const char* promise)
{
    if (!holds) {
        std::fprintf(stderr, "broken promise: %s\n", promise);
        std::abort();
    }
}

std::string FileOf(std::string_view input)
{
    static const TempDir folder;
    return folder.Write("input", std::string(input));
}

std::string_view Text(const std::uint8_t* data, std::size_t size)
{
    return {reinterpret_cast<const char*>(data), size};
}
