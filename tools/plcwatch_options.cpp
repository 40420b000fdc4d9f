#include "plcwatch_options.h"

#include "command_line.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <iostream>

namespace plcwatch {

namespace {

using std::chrono::milliseconds;

constexpr const char* description =
    R"(Watches operands of a machine and prints their values.

A variable list is the debugger's own file: a line for each operand, as in "MW20/D". On a terminal
a table is kept up to date; else, and with --plain, there is a line for each change: seconds since
the start, operand, value, and the state of the link when that has changed, separated by tabs.)";

constexpr const char* exitStatuses = R"(
Exit status:
  0  all went well, also when nobody reads the output any more
  1  a file is missing or damaged
  2  the command line is wrong
  3  the machine does not know an operand
  4  the machine or the broker cannot be reached, or the machine is lost at the end
  5  a value was not written, or not confirmed
  130, 143  interrupted, terminated)";

constexpr milliseconds shortestEvery{10};
constexpr milliseconds longestEvery{std::chrono::minutes(1)};

std::string DurationError(const std::string& text)
{
    return ParseDuration(text) ? "" : '"' + text + "\" is no time (100ms, 10s, 5min)";
}

/// The words of the command line that have to be looked at together.
struct Words
{
    std::string read;
    std::string write;
    std::string format = "D";
    std::string every;
    std::string limit;
    std::string plant;
};

/// @throws CLI::ValidationError when it is not one.
Variable VariableOf(const char* option, const std::string& name, const std::string& format)
{
    auto variable = ParseVariable(name, format);
    if (!variable) {
        throw CLI::ValidationError(option, variable.Message());
    }
    return *std::move(variable);
}

/// @param text "MW20=17".
WriteOrder OrderOf(const std::string& text, const std::string& format)
{
    const std::size_t equals = text.find('=');
    if (equals == std::string::npos) {
        throw CLI::ValidationError("--write", '"' + text + "\" is not of the form MW20=17");
    }
    Variable variable = VariableOf("--write", text.substr(0, equals), format);
    wxString error;
    if (!variable.var.SetVarValue(wxString::FromUTF8(text.substr(equals + 1)), error)) {
        throw CLI::ValidationError("--write", '"' + text + "\": " + error.utf8_string());
    }
    return {variable, static_cast<std::uint32_t>(variable.var.value)};
}

/// What is wanted of which machine, or the machines of which plant.
void TakeAddress(const Words& words, Options& options)
{
    const int wanted = static_cast<int>(!options.list.empty()) +
                       static_cast<int>(!words.read.empty()) +
                       static_cast<int>(!words.write.empty());
    if (!words.plant.empty()) {
        if (wanted != 0 || !options.machine.empty() || !options.map.empty()) {
            throw CLI::ValidationError("--machines", "stands alone: it lists a plant's machines");
        }
        options.plant = *plclink::ParseMqttPlant(words.plant);
        return;
    }
    if (options.machine.empty()) {
        throw CLI::ValidationError("give one of --machine and --machines");
    }
    if (wanted != 1) {
        throw CLI::ValidationError("give one of LIST, --read and --write");
    }
    if (const auto wrong = plclink::MapError(options.machine, options.map); !wrong.empty()) {
        throw CLI::ValidationError("--machine", wrong);
    }
    options.address = *plclink::ParseAddress(options.machine);
}

bool HasBroker(const Options& options)
{
    return options.plant || options.publish.address ||
           std::holds_alternative<plclink::MqttAddress>(options.address);
}

void Combine(const Words& words, Options& options)
{
    TakeAddress(words, options);
    if (options.publish.address && options.list.empty()) {
        throw CLI::ValidationError("--publish", "needs a LIST: what everybody is told");
    }
    if (const auto wrong = plchost::BrokerOptionsError(options.access);
        !HasBroker(options) && !wrong.empty()) {
        throw CLI::ValidationError(wrong);
    }
    if (!words.read.empty()) {
        options.read = VariableOf("--read", words.read, words.format);
    }
    if (!words.write.empty()) {
        options.write = OrderOf(words.write, words.format);
    }
    if (!words.every.empty()) {
        options.every = *ParseDuration(words.every);
    }
    if (options.every < shortestEvery || options.every > longestEvery) {
        throw CLI::ValidationError("--every", '"' + words.every + "\" is not in 10ms to 1min");
    }
    if (!words.limit.empty()) {
        options.limit = ParseDuration(words.limit);
    }
}

} // namespace

std::optional<milliseconds> ParseDuration(const std::string& text)
{
    double number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    const std::string unit(end, text.data() + text.size());
    constexpr double longest = 1e9;
    if (error != std::errc() || !(number >= 0 && number <= longest)) {
        return std::nullopt;
    }
    using Fraction = std::chrono::duration<double, std::milli>;
    if (unit == "ms") {
        return std::chrono::duration_cast<milliseconds>(Fraction(number));
    }
    if (unit.empty() || unit == "s") {
        return std::chrono::duration_cast<milliseconds>(std::chrono::duration<double>(number));
    }
    if (unit == "min") {
        return std::chrono::duration_cast<milliseconds>(
            std::chrono::duration<double, std::chrono::minutes::period>(number));
    }
    return std::nullopt;
}

std::variant<Options, ExitStatus> ParseOptions(int argc, const char* const* argv)
{
    Options options;
    Words words;
    CLI::App app{description, "plcwatch"};
    app.footer(exitStatuses);
    app.add_option("LIST", options.list, "the variable list (*.plc)")->type_name("");
    app.add_option("--machine", options.machine, "the machine: " + plclink::AddressForms())
        ->type_name("ADDRESS")
        ->check(CLI::Validator(plclink::AddressError, ""));
    app.add_option("--map", options.map, "which operands lie where in a Modbus device")
        ->type_name("FILE");
    plchost::AddPlantOption(
        app, words.plant, "list the machines of a plant behind a broker and end");
    auto* const publish = plchost::AddPublishOptions(app, options.publish);
    app.add_option("--listing", options.listing, "the program debug file, for their program page")
        ->type_name("FILE")
        ->needs(publish);
    plchost::AddBrokerOptions(app, options.access);
    app.add_option("--read", words.read, "print the value of this operand and end")
        ->type_name("OPERAND");
    app.add_option("--write", words.write, "write a value, read it back and end")
        ->type_name("OPERAND=VALUE");
    app.add_option("--format", words.format, "of --read and --write: D, H, B or G, else D")
        ->type_name("LETTER")
        ->check(CLI::IsMember({"D", "H", "B", "G"}).description(""));
    app.add_option("--every", words.every, "how often to look, 10ms to 1min, else 100ms")
        ->type_name("TIME")
        ->check(CLI::Validator(DurationError, ""));
    app.add_option("--for", words.limit, "end after this time, as 10s")
        ->type_name("TIME")
        ->check(CLI::Validator(DurationError, ""));
    app.add_flag("--once", options.once, "end as soon as every value has come");
    app.add_flag("--plain", options.plain, "lines, also on a terminal");
    app.add_flag("--json", options.json, "a JSON object a line");
    app.add_flag("--clock", options.clock, "the time of day with its zone instead of seconds");
    app.final_callback([&] { Combine(words, options); });
    if (const auto ended = base::ReadCommandLine(app, argc, argv)) {
        return static_cast<ExitStatus>(*ended);
    }
    return options;
}

} // namespace plcwatch
