#pragma once

#include "result.h"

#include <string>
#include <string_view>
#include <vector>

// The host's files in the user's configuration folder, which the debugger shares. No windows.
// GUI thread.

namespace plchost {

/// Where everything of one machine lies; all paths are absolute.
struct ConfigFiles
{
    std::string folder;
    std::string prefix;    ///< For PLC_DBG_INIT::szPath.
    std::string settings;  ///< plcdebug.ini, as the debugger derives it from the prefix.
    std::string debugFile; ///< The program debug file.
};

/// @param machine the name that the files of this machine begin with.
ConfigFiles FilesIn(const std::string& folder, const std::string& machine);

/// What the host tells the debugger by the settings file.
struct DebuggerSettings
{
    std::string languagePath; ///< Folder with the language files.
    std::string language;     ///< Name of a language file without its extension.
};

/// Writes the host's own keys and no other. The file is replaced as a whole, or not at all.
base::Result<void> WriteSettings(const std::string& file, const DebuggerSettings& settings);

/// The language that was last chosen; empty when none was.
std::string ReadLanguage(const std::string& file);

/// Gives a machine without a last variable list a copy of its sample list.
base::Result<void> SeedWatchList(const ConfigFiles& files, const std::string& sample);

/// Gives a machine without a last variable list one of these operands; none: it stays without.
base::Result<void>
SeedWatchListOf(const ConfigFiles& files, const std::vector<std::string>& operands);

/// @return the lines of a variable list, of as many operands as one may have.
std::string WatchListOf(const std::vector<std::string>& operands);

/// Replaces the list of this machine and makes it the last one.
/// @param lines of a variable list.
base::Result<void> UseWatchList(const ConfigFiles& files, const std::string& lines);

/// Replaces a file of these as a whole, or leaves it as it was.
base::Result<void> ReplaceConfigFile(const std::string& file, std::string_view content);

/// Whether the debugger can open on this program debug file: without any block it would end the
/// host.
base::Result<void> CheckDebugFile(const std::string& file);

} // namespace plchost
