#include "messages.h"

#include "json_reader.h"
#include "utf8.h"
#include "write_list.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

namespace plcremote {

namespace {

using Json = nlohmann::json;

constexpr std::size_t longestSentence = 400; ///< Bytes.

/// A sentence as it may be sent: UTF-8 of one line, and not endless.
std::string Clean(std::string_view text)
{
    std::string clean;
    while (!text.empty()) {
        const std::string_view character = text.substr(0, base::CharacterLength(text));
        if (clean.size() + character.size() > longestSentence) {
            break;
        }
        clean += IsPrintable(character) ? character : " ";
        text.remove_prefix(std::max<std::size_t>(character.size(), 1));
    }
    return clean;
}

std::string Dump(const Json& json)
{
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json Begin()
{
    return {{"format", formatVersion}};
}

Json OptionalNumber(const std::optional<std::uint32_t>& number)
{
    return number ? Json(*number) : Json();
}

std::string KeyOf(const plc::Operand& operand)
{
    return plc::OperandName(operand);
}

constexpr std::array statuses{
    plclink::LinkStatus::Connecting,
    plclink::LinkStatus::Running,
    plclink::LinkStatus::Slow,
    plclink::LinkStatus::Lost,
    plclink::LinkStatus::Refused};

plclink::LinkStatus StatusOf(JsonReader& reader, const std::string& text)
{
    const auto* const status =
        std::find_if(statuses.begin(), statuses.end(), [&text](auto candidate) {
            return plclink::StatusText(candidate) == text;
        });
    if (status == statuses.end()) {
        reader.Fail("there is no state \"" + text + '"');
        return {};
    }
    return *status;
}

std::optional<std::uint32_t> OptionalValue(JsonReader& reader, const char* name)
{
    if (reader.IsNull(name)) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(reader.Number(name, UINT32_MAX));
}

plc::StepRange RangeOf(JsonReader& reader)
{
    const plc::StepRange range{
        static_cast<std::int32_t>(reader.Number("first", INT32_MAX)),
        static_cast<std::int32_t>(reader.Number("last", INT32_MAX))};
    if (const std::size_t count = plc::CountSteps(range); count == 0 || count > mostSteps) {
        reader.Fail("the range of steps is upside down or too long");
    }
    return range;
}

void ReadValuesInto(ValuesMessage& message, JsonReader& reader)
{
    for (const auto& [name, value] : reader.Members("values", mostOperands)) {
        const plc::Operand operand = reader.OperandOf(name);
        message.values.push_back({operand, reader.ValueOf(operand, *value), ""});
    }
    for (const auto& [name, reason] : reader.Members("refused", mostOperands)) {
        message.values.push_back(
            {reader.OperandOf(name), std::nullopt, reader.SentenceOf(*reason, longestSentence)});
    }
    for (const auto& [name, age] : reader.Members("ages", mostOperands)) {
        const plc::Operand operand = reader.OperandOf(name);
        message.ages.push_back({operand, milliseconds(reader.NumberOf(*age, longestTime))});
    }
}

StepStatesMessage StatesOf(JsonReader& reader)
{
    StepStatesMessage message;
    message.range = RangeOf(reader);
    for (const auto* const item : reader.Items("states", mostSteps)) {
        constexpr std::size_t parts = 2;
        if (!item->is_array() || item->size() != parts) {
            reader.Fail("a step state is no pair");
            break;
        }
        plc::StepState state;
        state.logicResult = reader.NumberOf((*item)[0], 1) == 1;
        if (!(*item)[1].is_null()) {
            state.accumulator =
                static_cast<std::int32_t>(reader.SignedNumberOf((*item)[1], INT32_MIN, INT32_MAX));
        }
        message.states.push_back(state);
    }
    if (message.states.size() != plc::CountSteps(message.range)) {
        reader.Fail("there is not one state for each step");
    }
    return message;
}

WrittenMessage WrittenOf(JsonReader& reader)
{
    WrittenMessage message;
    message.id = reader.Id("id");
    message.before = OptionalValue(reader, "before");
    message.after = OptionalValue(reader, "after");
    message.refusal = reader.Sentence("refusal", longestSentence);
    return message;
}

RefusalMessage RefusalOf(JsonReader& reader)
{
    RefusalMessage message;
    const std::string of = reader.Sentence("of", longestSentence);
    if (of != "watch" && of != "steps") {
        reader.Fail("nothing called \"" + of + "\" is refused");
    }
    message.of = of == "watch" ? RefusalMessage::Of::Watch : RefusalMessage::Of::Steps;
    message.reason = reader.Sentence("reason", longestSentence);
    return message;
}

Json JsonOf(const WrittenMessage& message)
{
    Json json = Begin();
    json["kind"] = "written";
    json["id"] = message.id;
    json["before"] = OptionalNumber(message.before);
    json["after"] = OptionalNumber(message.after);
    json["refusal"] = Clean(message.refusal);
    return json;
}

Json JsonOf(const StepStatesMessage& message)
{
    Json json = Begin();
    json["kind"] = "steps";
    json["first"] = message.range.first;
    json["last"] = message.range.last;
    Json& states = json["states"] = Json::array();
    for (const plc::StepState& state : message.states) {
        states.push_back(
            {state.logicResult ? 1 : 0, state.accumulator ? Json(*state.accumulator) : Json()});
    }
    return json;
}

Json JsonOf(const RefusalMessage& message)
{
    Json json = Begin();
    json["kind"] = "refusal";
    json["of"] = message.of == RefusalMessage::Of::Watch ? "watch" : "steps";
    json["reason"] = Clean(message.reason);
    return json;
}

} // namespace

std::uint32_t HighestValue(plc::Width width)
{
    constexpr unsigned bitsOfByte = 8;
    return width == plc::Width::Bit
               ? 1
               : UINT32_MAX >> (bitsOfByte * (sizeof(std::uint32_t) - plc::ByteCount(width)));
}

std::string Text(const StateMessage& message)
{
    Json json = Begin();
    json["session"] = message.session;
    json["link"] = plclink::StatusText(message.link.status);
    json["reason"] = Clean(message.link.reason);
    json["version"] = Clean(message.version);
    json["turn"] = message.turn.count();
    json["listing"] = message.hasListing;
    json["writable"] = message.writable;
    return Dump(json);
}

std::string Text(const ValuesMessage& message)
{
    Json json = Begin();
    json["session"] = message.session;
    json["sequence"] = message.sequence;
    json["running"] = message.running.count();
    json["whole"] = message.isWhole;
    Json& values = json["values"] = Json::object();
    Json refused = Json::object();
    for (const RemoteValue& value : message.values) {
        if (value.value) {
            values[KeyOf(value.operand)] = *value.value;
        } else {
            refused[KeyOf(value.operand)] = Clean(value.refusal);
        }
    }
    Json ages = Json::object();
    for (const RemoteAge& age : message.ages) {
        ages[KeyOf(age.operand)] = age.age.count();
    }
    json["refused"] = std::move(refused);
    json["ages"] = std::move(ages);
    return Dump(json);
}

std::string Text(const WatchMessage& message)
{
    Json json = Begin();
    Json& operands = json["operands"] = Json::array();
    for (const plc::Operand& operand : message.operands) {
        operands.push_back(KeyOf(operand));
    }
    return Dump(json);
}

std::string Text(const StepsMessage& message)
{
    Json json = Begin();
    if (message.range) {
        json["first"] = message.range->first;
        json["last"] = message.range->last;
    }
    return Dump(json);
}

std::string Text(const WriteMessage& message)
{
    Json json = Begin();
    json["session"] = message.session;
    json["id"] = message.id;
    json["operand"] = KeyOf(message.operand);
    json["value"] = message.value;
    json["running"] = message.running.count();
    return Dump(json);
}

std::string Text(const AnswerMessage& message)
{
    return Dump(std::visit([](const auto& answer) { return JsonOf(answer); }, message));
}

base::Result<StateMessage> ReadState(std::string_view text)
{
    return ReadMessage<StateMessage>(text, [](JsonReader& reader) {
        StateMessage message;
        message.session = reader.Id("session");
        message.link.status = StatusOf(reader, reader.Sentence("link", longestSentence));
        message.link.reason = reader.Sentence("reason", longestSentence);
        message.version = reader.Sentence("version", longestSentence);
        message.turn = milliseconds(reader.Number("turn", longestTime));
        message.hasListing = reader.Flag("listing");
        for (const auto* const line : reader.Items("writable", mostPermissions)) {
            message.writable.push_back(reader.SentenceOf(*line, longestSentence));
        }
        return message;
    });
}

base::Result<ValuesMessage> ReadValues(std::string_view text)
{
    return ReadMessage<ValuesMessage>(text, [](JsonReader& reader) {
        ValuesMessage message;
        message.session = reader.Id("session");
        message.sequence = reader.Number("sequence", INT64_MAX);
        message.running = milliseconds(reader.Number("running", longestTime));
        message.isWhole = reader.Flag("whole");
        ReadValuesInto(message, reader);
        return message;
    });
}

base::Result<WatchMessage> ReadWatch(std::string_view text)
{
    return ReadMessage<WatchMessage>(text, [](JsonReader& reader) {
        WatchMessage message;
        // Too many are refused by the machine, which can say so.
        for (const auto* const name : reader.Items("operands", longestMessage)) {
            message.operands.push_back(reader.OperandOf(reader.SentenceOf(*name, longestSentence)));
        }
        return message;
    });
}

base::Result<StepsMessage> ReadSteps(std::string_view text)
{
    return ReadMessage<StepsMessage>(text, [](JsonReader& reader) {
        StepsMessage message;
        if (reader.Has("first") || reader.Has("last")) {
            message.range = RangeOf(reader);
        }
        return message;
    });
}

base::Result<WriteMessage> ReadWrite(std::string_view text)
{
    return ReadMessage<WriteMessage>(text, [](JsonReader& reader) {
        WriteMessage message;
        message.session = reader.Id("session");
        message.id = reader.Id("id");
        message.operand = reader.OperandOf(reader.Sentence("operand", longestSentence));
        message.value = reader.Value("value", message.operand);
        message.running = milliseconds(reader.Number("running", longestTime));
        return message;
    });
}

base::Result<AnswerMessage> ReadAnswer(std::string_view text)
{
    return ReadMessage<AnswerMessage>(text, [](JsonReader& reader) -> AnswerMessage {
        const std::string kind = reader.Sentence("kind", longestSentence);
        if (kind == "steps") {
            return StatesOf(reader);
        }
        if (kind == "refusal") {
            return RefusalOf(reader);
        }
        if (kind != "written") {
            reader.Fail("there is no answer of the kind \"" + kind + '"');
        }
        return WrittenOf(reader);
    });
}

} // namespace plcremote
