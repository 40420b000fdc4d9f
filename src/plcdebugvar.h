#pragma once

#include "plcdebug_host.h"
#include "plcdebugvar_kinds.h"
#include "plcintlang.h"

#include <wx/string.h>

#include <array>
#include <cstdint>
#include <optional>

// One watched PLC operand: its address grammar, display and entry formats, request payloads.
// No windows but the message box of CheckVarAddress(), which is not part of the core;
// JudgeAddress() is. GUI thread, because of the texts.

/// Kinds of variable requests.
enum eRequestVar : std::int32_t
{
    eReadVar = 0,
    eWriteVar = 1,
    eDeleteVar = 2
};

constexpr std::int32_t noDataBlock = -1; ///< The block number of an operand in another area.
constexpr std::int32_t noIndex = -1;     ///< The index of a block that belongs to no family.

/// A data block that can be watched.
struct DataBlock
{
    std::int32_t number;
    TextId description;
    std::int32_t index; ///< Member of a family of like blocks that share a description, or noIndex.
    long limit;         ///< Bytes in the block.
};

/// All data blocks that can be watched, in the order in which the settings dialog offers them.
constexpr std::size_t dataBlockCount = 35;
extern const std::array<DataBlock, dataBlockCount> varDBs;

/// One watched operand. A plain value.
class PlcDebugVar
{
public:
    std::int32_t area = eAreaOutput;     ///< eVarArea
    std::int32_t format = eFormatBinary; ///< eVarFormat
    std::int32_t size = eSizeBit;        ///< eVarSize
    wxString address;                    ///< As typed: "10", or "10.3" for a bit.
    std::int32_t dbNumber = noDataBlock; ///< For area DB only.
    std::int32_t value = 0;              ///< Last known raw value, sign-extended.
    std::uint16_t requestId = 0;         ///< The key of its requests and answers.

    bool operator==(const PlcDebugVar& other) const;

    /// Checks an address text against this record's area, size and block.
    /// @param showErrors shows a message box for a refusal that has a message.
    /// @return true when the address is valid.
    bool CheckVarAddress(const wxString& text, bool showErrors) const;

    /// @param withBlank puts a blank before the address, for display.
    /// @return the operand's name, for example "DB1.DBX10.3"; empty when the record is not valid.
    wxString GetVarName(bool withBlank) const;

    /// Stores an answered raw value: of a byte or word its low bits, sign-extended.
    void SetVarValue(long newValue);

    /// Parses, checks and stores a typed value.
    /// @param error receives the message when the text is refused.
    /// @return false when the text is refused; the value is then unchanged.
    bool SetVarValue(const wxString& text, wxString& error);

    /// @return the value as text, with a decimal point in every locale; "-1" for a size or format
    ///         that does not exist.
    wxString GetVarValueShow() const;

    /// @return the caption of the format.
    wxString GetVarFormatShow() const;

    /// Builds a request; bytes past its length are 0.
    /// @param argument of a delete request: PLC_DELETE_ARG_*; else not used.
    CMD_DATA GetVarCMD(eRequestVar kind, std::int16_t argument) const;
};

/// The verdict on an address: valid, or refused with or without a message.
struct AddressVerdict
{
    bool valid = false;
    std::optional<TextId> message; ///< Of a refusal.
    long bound = 0;                ///< The argument of TextId::AddressRange.
};

/// Judges an address text against the area, size and block of @p var.
AddressVerdict JudgeAddress(const PlcDebugVar& var, const wxString& address);

/// @return what the operator is told about a refused address; empty when there is nothing to tell.
wxString RefusalText(const AddressVerdict& verdict);
