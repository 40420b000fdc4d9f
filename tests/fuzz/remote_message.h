#pragma once

#include "fuzz.h"
#include "messages.h"

#include <algorithm>

// What every message over a broker is held to.

/// Whether a text is one line without anything that a terminal would obey.
inline bool IsLine(const std::string& text)
{
    for (const char* control : {"\xC2\x85", "\xC2\x9B", "\xE2\x80\xA8", "\xE2\x80\xA9"}) {
        if (text.find(control) != std::string::npos) {
            return false;
        }
    }
    return std::none_of(text.begin(), text.end(), [](unsigned char character) {
        return character < ' ' || character == 0x7F;
    });
}

/// One that is read is sent as a text that is read as the same; of any other there is a sentence.
/// @return the message.
template <typename Message>
base::Result<Message>
RequireRoundTrip(std::string_view text, base::Result<Message> (*read)(std::string_view))
{
    base::Result<Message> message = read(text);
    if (message) {
        const std::string sent = plcremote::Text(*message);
        const auto again = read(sent);
        Require(static_cast<bool>(again), "what is sent can be read");
        Require(plcremote::Text(*again) == sent, "what is read is what was sent");
    } else {
        Require(
            !message.Message().empty() && IsLine(message.Message()),
            "what is not read is told in one line");
    }
    return message;
}
