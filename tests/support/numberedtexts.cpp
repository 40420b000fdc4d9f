#include "numberedtexts.h"

#include <filesystem>
#include <fstream>

namespace {

constexpr int lastEntry = 109;

std::string NumberedText(int entry)
{
    static const std::set<int> menuLetters = {51, 54, 57, 60, 63, 66, 103};
    static const std::map<int, std::string> arguments = {
        {88, " %d"}, {92, " %s"}, {98, " %d"}, {100, " %d"}, {106, " %d"}};

    if (menuLetters.count(entry) != 0) {
        return "...";
    }
    const auto argument = arguments.find(entry);
    return "T" + std::to_string(entry) + (argument != arguments.end() ? argument->second : "");
}

} // namespace

void WriteNumberedTexts(
    const std::string& directory,
    const std::map<int, std::string>& changes,
    const std::set<int>& missing)
{
    std::ofstream file(std::filesystem::path(directory) / (std::string(numberedLanguage) + ".lng"));
    file << "[48]\n";
    for (int entry = 1; entry <= lastEntry; ++entry) {
        if (missing.count(entry) == 0) {
            const auto change = changes.find(entry);
            file << entry << '=' << (change != changes.end() ? change->second : NumberedText(entry))
                 << '\n';
        }
    }
}
