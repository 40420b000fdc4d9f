#pragma once

#include "messages.h"

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Takes a message apart that may be anything. Any thread.

namespace plcremote {

/// A time in ms that is sent is not longer: some thirty years.
constexpr std::uint64_t longestTime = 1'000'000'000'000;

/// Whether a character may stand in a text that is shown: it neither begins a line, nor would a
/// terminal obey it. @param character in UTF-8; empty: broken, which may not.
bool IsPrintable(std::string_view character);

/// The members of a JSON object. The first thing that is wrong is kept, and everything else may be
/// read on as if nothing was.
class JsonReader
{
public:
    /// @param text a whole message.
    explicit JsonReader(std::string_view text);

    /// What is wrong; empty: nothing so far.
    const std::string& Wrong() const { return m_wrong; }

    void Fail(const std::string& wrong);

    bool Has(const char* name) const { return m_json.contains(name); }

    bool IsNull(const char* name);

    std::uint64_t Number(const char* name, std::uint64_t highest);
    bool Flag(const char* name);
    /// One line of text. @param longest bytes.
    std::string Sentence(const char* name, std::size_t longest);
    /// Sixteen hexadecimal digits.
    std::string Id(const char* name);
    /// A value of this operand.
    std::uint32_t Value(const char* name, const plc::Operand& operand);
    /// The items of an array.
    std::vector<const nlohmann::json*> Items(const char* name, std::size_t most);
    /// The members of an object.
    std::vector<std::pair<std::string, const nlohmann::json*>>
    Members(const char* name, std::size_t most);

    // The same of a single value.
    std::uint64_t NumberOf(const nlohmann::json& json, std::uint64_t highest);
    std::int64_t
    SignedNumberOf(const nlohmann::json& json, std::int64_t lowest, std::int64_t highest);
    std::string SentenceOf(const nlohmann::json& json, std::size_t longest);
    std::uint32_t ValueOf(const plc::Operand& operand, const nlohmann::json& json);
    plc::Operand OperandOf(const std::string& name);

private:
    const nlohmann::json& Member(const char* name);

    nlohmann::json m_json; ///< An object.
    std::string m_wrong;
};

/// @param read takes the reader and gives the message.
template <typename Message, typename Read>
base::Result<Message> ReadMessage(std::string_view text, Read read)
{
    JsonReader reader(text);
    Message message = read(reader);
    if (reader.Wrong().empty()) {
        return message;
    }
    return base::Failure{reader.Wrong()};
}

} // namespace plcremote
