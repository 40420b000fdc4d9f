#pragma once

#include "operand.h"
#include "result.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// Who may write what from far away. Values. Any thread.

namespace plcremote {

/// Lines of a list that allow something; a machine tells all of them.
constexpr std::size_t mostPermissions = 1000;

/// The lines of a file: a user, then an operand or a range of them as in "MW0-MW20"; "#" begins a
/// comment. An operand is allowed when all of it lies in what one line of that user names.
class WriteList
{
public:
    /// Allows nothing.
    WriteList() = default;

    bool Allows(std::string_view user, const plc::Operand& operand) const;

    /// The lines without comments: "service MW0-MW20".
    std::vector<std::string> Lines() const;

private:
    friend base::Result<WriteList> ParseWriteList(std::string_view text, std::string_view file);

    struct Permission
    {
        std::string user;
        plc::Operand first;
        plc::Operand last;
    };

    std::vector<Permission> m_permissions;
};

/// @param file named in what is wrong.
/// @return the list, or all that is wrong with it, a line for each fault: "FILE:3: ...".
base::Result<WriteList> ParseWriteList(std::string_view text, std::string_view file);

base::Result<WriteList> ReadWriteListFile(const std::string& file);

} // namespace plcremote
