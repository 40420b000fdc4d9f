#include "modbus_address.h"

#include "host_and_port.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <optional>
#include <utility>

namespace plclink {

namespace {

constexpr std::string_view tcpScheme = "modbus:";
constexpr std::string_view rtuScheme = "modbus-rtu:";
constexpr std::string_view slashes = "//";
constexpr std::uint16_t usualPort = 502;
constexpr int highestUnit = 247;
constexpr int gatewayUnit = 255; ///< Of a device that is its own gateway.
constexpr int usualBaud = 19200;
constexpr int bauds[] = {
    110, 300, 600, 1200, 2400, 4800, 9600, 19200, 38400, 57600, 115200, 230400, 460800, 921600};

bool HasPrefix(std::string_view text, std::string_view prefix)
{
    return text.substr(0, prefix.size()) == prefix;
}

std::optional<int> NumberOf(std::string_view text)
{
    int number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end && number >= 0 ? std::optional(number)
                                                              : std::nullopt;
}

std::string InQuotes(std::string_view text)
{
    return '"' + std::string(text) + '"';
}

base::Failure Wrong(std::string_view address, const std::string& reason, std::string_view form)
{
    return {InQuotes(address) + ": " + reason + "; the right form is " + std::string(form)};
}

base::Failure WrongTcp(std::string_view address, const std::string& reason)
{
    return Wrong(address, reason, modbusTcpForm);
}

base::Failure WrongRtu(std::string_view address, const std::string& reason)
{
    return Wrong(address, reason, modbusRtuForm);
}

base::Result<ModbusAddress> ParseTcp(std::string_view text)
{
    std::string_view rest = text.substr(tcpScheme.size());
    if (!HasPrefix(rest, slashes)) {
        return WrongTcp(text, "there is no //");
    }
    rest.remove_prefix(slashes.size());
    const std::size_t slash = rest.find('/');
    if (slash == std::string_view::npos) {
        return WrongTcp(text, "there is no unit");
    }
    auto place = ParseHostAndPort(rest.substr(0, slash), usualPort);
    if (!place) {
        return WrongTcp(text, place.Message());
    }
    const auto unit = NumberOf(rest.substr(slash + 1));
    if (!unit || (*unit > highestUnit && *unit != gatewayUnit)) {
        return WrongTcp(
            text,
            "the unit is a number from 0 to " + std::to_string(highestUnit) + ", or " +
                std::to_string(gatewayUnit));
    }
    return ModbusAddress(ModbusTcp{std::move(place->host), std::to_string(place->port), *unit});
}

/// Takes "KEY=VALUE".
/// @return what is wrong, if anything.
std::optional<std::string> TakeSetting(std::string_view setting, ModbusRtu& address)
{
    const std::size_t equals = std::min(setting.find('='), setting.size());
    const std::string_view key = setting.substr(0, equals);
    const std::string_view value = setting.substr(std::min(equals + 1, setting.size()));
    const int number = NumberOf(value).value_or(-1);
    if (key == "baud") {
        if (std::find(std::begin(bauds), std::end(bauds), number) == std::end(bauds)) {
            return "there is no baud rate " + InQuotes(value);
        }
        address.baud = number;
    } else if (key == "parity") {
        if (value != "N" && value != "E" && value != "O") {
            return "the parity is N, E or O";
        }
        address.parity = value.front();
    } else if (key == "stop") {
        if (number != 1 && number != 2) {
            return "there are 1 or 2 stop bits";
        }
        address.stopBits = number;
    } else if (key == "unit") {
        if (number < 1 || number > highestUnit) {
            return "the unit is a number from 1 to " + std::to_string(highestUnit);
        }
        address.unit = number;
    } else {
        return "there is no setting " + InQuotes(setting);
    }
    return std::nullopt;
}

base::Result<ModbusAddress> ParseRtu(std::string_view text)
{
    const std::string_view rest = text.substr(rtuScheme.size());
    const std::size_t question = std::min(rest.find('?'), rest.size());
    ModbusRtu address{std::string(rest.substr(0, question)), usualBaud, 'E', 1, 1};
    if (address.device.empty()) {
        return WrongRtu(text, "there is no device");
    }
    std::string_view settings = rest.substr(std::min(question + 1, rest.size()));
    while (!settings.empty()) {
        const std::string_view setting = settings.substr(0, settings.find('&'));
        settings.remove_prefix(std::min(setting.size() + 1, settings.size()));
        if (const auto wrong = TakeSetting(setting, address)) {
            return WrongRtu(text, *wrong);
        }
    }
    return ModbusAddress(address);
}

} // namespace

bool IsModbusAddress(std::string_view text)
{
    return HasPrefix(text, tcpScheme) || HasPrefix(text, rtuScheme);
}

base::Result<ModbusAddress> ParseModbusAddress(std::string_view text)
{
    return HasPrefix(text, rtuScheme)   ? ParseRtu(text)
           : HasPrefix(text, tcpScheme) ? ParseTcp(text)
                                        : WrongTcp(text, "this is no Modbus address");
}

} // namespace plclink
