#pragma once

#include <string_view>

// The host's own words, in the languages of the debugger. Any thread.

namespace plchost {

struct HostTexts
{
    const char* title;      ///< Of the bottling line.
    const char* otherTitle; ///< Of another program.
    const char* running;    ///< State of the PLC.
    const char* standing;   ///< State of the PLC.
    const char* start;      ///< Button.
    const char* stop;       ///< Button.
    const char* cycleTime;
    const char* work; ///< Time that the last cycle took.
    const char* longest;
    const char* openDebugger;
    const char* closeDebugger;
    const char* language;
    const char* languageHint;
    const char* switches;
    const char* lamps;
    const char* tank;
    const char* motor;
    const char* delivered;
    const char* noProcess;
    const char* recording; ///< Title of a recording's window.
    const char* fromStart; ///< Button.
    const char* link;
    const char* linkConnecting; ///< State of the link, as the next four.
    const char* linkRunning;
    const char* linkSlow;
    const char* linkLost;
    const char* linkRefused;
    const char* answersPerSecond; ///< Unit.
    const char* watchedOperands;
    const char* oldOnes; ///< Of the operands.
    const char* operand; ///< Column, as the next three.
    const char* value;
    const char* age;
    const char* note;
    const char* oldSince;         ///< A time of day follows.
    const char* lastValues;       ///< What the debugger's rows do not tell.
    const char* noStates;         ///< Of a device.
    const char* stepsGoTo;        ///< Program states; a name follows.
    const char* noListing;        ///< Stands in the listing of a device; ASCII.
    const char* isFarAway;        ///< Of a machine behind a broker.
    const char* noListingHasCome; ///< Stands in the listing of such a machine; ASCII.
    const char* lostMessages;     ///< A number follows, as of the next.
    const char* droppedMessages;
    const char* machines; ///< Of a plant, whose name stands before.
    const char* machine;  ///< Column, as the next four.
    const char* programPage;
    const char* writable;
    const char* version;
    const char* reason;
    const char* yes;
    const char* no;
    const char* broker;
    const char* noMachines;
    const char* open;       ///< Button.
    const char* isOpen;     ///< A machine's name stands before, as before the next.
    const char* endedWrong; ///< The program of its window.
};

/// English for a language that the host does not speak.
const HostTexts& TextsIn(std::string_view language);

/// "de" or "en": the language of the user's environment.
const char* EnvironmentLanguage();

} // namespace plchost
