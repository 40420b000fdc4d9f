#include "json_reader.h"

#include "utf8.h"

#include <algorithm>

namespace plcremote {

namespace {

using Json = nlohmann::json;

constexpr int deepest = 3; ///< A pair of a step state, in an array, in the message.

const Json nothing;

/// Whether nothing in a text can begin a line or be obeyed by a terminal.
bool IsLine(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t length = base::CharacterLength(text);
        if (!IsPrintable(text.substr(0, length))) {
            return false;
        }
        text.remove_prefix(length);
    }
    return true;
}

bool IsHexadecimal(char character)
{
    return (character >= '0' && character <= '9') || (character >= 'a' && character <= 'f');
}

} // namespace

bool IsPrintable(std::string_view character)
{
    constexpr std::string_view firstPrintable = " ";
    constexpr std::string_view deleted = "\x7F";
    constexpr std::string_view lastControl = "\xC2\x9F";
    constexpr std::string_view lineEnd = "\xE2\x80\xA8";
    constexpr std::string_view paragraphEnd = "\xE2\x80\xA9";
    // Beyond ASCII the second half of the control characters comes first.
    const bool isControl =
        character < firstPrintable || (character >= deleted && character <= lastControl);
    return !isControl && character != lineEnd && character != paragraphEnd;
}

JsonReader::JsonReader(std::string_view text) : m_json(Json::object())
{
    if (text.size() > longestMessage) {
        Fail("it is larger than " + std::to_string(longestMessage) + " bytes");
        return;
    }
    bool isTooDeep = false;
    // Depths that nobody means cost memory: what is below is not kept.
    const Json::parser_callback_t limit = [&isTooDeep](int depth, Json::parse_event_t, Json&) {
        isTooDeep = isTooDeep || depth > deepest;
        return depth <= deepest;
    };
    Json json = Json::parse(text, limit, false);
    if (json.is_discarded() || isTooDeep || !json.is_object()) {
        Fail("it is no JSON object");
        return;
    }
    m_json = std::move(json);
    if (Number("format", UINT32_MAX) != formatVersion) {
        Fail("it is of another format version than " + std::to_string(formatVersion));
    }
}

void JsonReader::Fail(const std::string& wrong)
{
    if (m_wrong.empty()) {
        m_wrong = wrong;
    }
}

const Json& JsonReader::Member(const char* name)
{
    const auto member = m_json.find(name);
    if (member == m_json.end()) {
        Fail("it lacks \"" + std::string(name) + '"');
        return nothing;
    }
    return *member;
}

bool JsonReader::IsNull(const char* name)
{
    return Member(name).is_null();
}

std::uint64_t JsonReader::Number(const char* name, std::uint64_t highest)
{
    return NumberOf(Member(name), highest);
}

bool JsonReader::Flag(const char* name)
{
    const Json& member = Member(name);
    if (!member.is_boolean()) {
        Fail('"' + std::string(name) + "\" is neither true nor false");
        return false;
    }
    return member.get<bool>();
}

std::string JsonReader::Sentence(const char* name, std::size_t longest)
{
    return SentenceOf(Member(name), longest);
}

std::string JsonReader::Id(const char* name)
{
    constexpr std::size_t digits = 16;
    std::string id = SentenceOf(Member(name), digits);
    if (id.size() != digits || !std::all_of(id.begin(), id.end(), &IsHexadecimal)) {
        Fail('"' + std::string(name) + "\" is not of sixteen hexadecimal digits");
    }
    return id;
}

std::uint32_t JsonReader::Value(const char* name, const plc::Operand& operand)
{
    return ValueOf(operand, Member(name));
}

std::vector<const Json*> JsonReader::Items(const char* name, std::size_t most)
{
    const Json& array = Member(name);
    if (!array.is_array() || array.size() > most) {
        Fail('"' + std::string(name) + "\" is no array, or too long");
        return {};
    }
    std::vector<const Json*> items;
    for (const Json& item : array) {
        items.push_back(&item);
    }
    return items;
}

std::vector<std::pair<std::string, const Json*>>
JsonReader::Members(const char* name, std::size_t most)
{
    const Json& object = Member(name);
    if (!object.is_object() || object.size() > most) {
        Fail('"' + std::string(name) + "\" is no object, or too large");
        return {};
    }
    std::vector<std::pair<std::string, const Json*>> members;
    for (const auto& [key, value] : object.items()) {
        members.emplace_back(key, &value);
    }
    return members;
}

std::uint64_t JsonReader::NumberOf(const Json& json, std::uint64_t highest)
{
    if (!json.is_number_unsigned() || json.get<std::uint64_t>() > highest) {
        Fail("a number is none, or too large");
        return 0;
    }
    return json.get<std::uint64_t>();
}

std::int64_t JsonReader::SignedNumberOf(const Json& json, std::int64_t lowest, std::int64_t highest)
{
    const bool isTooLarge = json.is_number_unsigned() &&
                            json.get<std::uint64_t>() > static_cast<std::uint64_t>(highest);
    if (!json.is_number_integer() || isTooLarge || json.get<std::int64_t>() < lowest) {
        Fail("a number is none, or too large");
        return 0;
    }
    return json.get<std::int64_t>();
}

std::string JsonReader::SentenceOf(const Json& json, std::size_t longest)
{
    const auto* const text = json.get_ptr<const std::string*>();
    if (text == nullptr || text->size() > longest || !IsLine(*text)) {
        Fail("a text is none, too long, or of several lines");
        return {};
    }
    return *text;
}

std::uint32_t JsonReader::ValueOf(const plc::Operand& operand, const Json& json)
{
    return static_cast<std::uint32_t>(NumberOf(json, HighestValue(operand.width)));
}

plc::Operand JsonReader::OperandOf(const std::string& name)
{
    const auto operand = plc::ParseOperand(name);
    if (!operand || !plc::Exists(*operand)) {
        Fail("there is no such operand");
        return {};
    }
    return *operand;
}

} // namespace plcremote
