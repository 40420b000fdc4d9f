#include "texts.h"

#include <cstdlib>

namespace plchost {

namespace {

constexpr HostTexts german{
    "Abfüllanlage",
    "SPS-Programm",
    "RUN",
    "STOP",
    "Start",
    "Stopp",
    "Zykluszeit",
    "davon Arbeit",
    "längstens",
    "Debugger öffnen",
    "Debugger schließen",
    "Sprache",
    "Der Debugger spricht sie ab dem nächsten Öffnen.",
    "Schalter",
    "Lampen",
    "Tank",
    "Motor",
    "Abgefüllt",
    "Dieses Programm hat kein Bild seiner Anlage.",
    "Aufzeichnung",
    "Von vorn",
    "Verbindung",
    "wird aufgebaut",
    "läuft",
    "langsam",
    "verloren",
    "abgewiesen",
    "Antworten/s",
    "Beobachtete Operanden",
    "davon veraltet",
    "Operand",
    "Wert",
    "Alter",
    "Hinweis",
    "veraltet, von",
    "Die Zeilen des Debuggers behalten ihren letzten Wert; wie alt er ist, zeigt diese Tabelle.",
    "Diese Steuerung liefert keine Programmzustände; die Programmseite zeigt dafür „?“.",
    "Programmzustände gehen an",
    "Zu dieser Steuerung wurde kein Listing angegeben.",
    "Diese Maschine ist fern, hinter einem Broker; wie alt ihre Werte hier sind, zeigt die "
    "Tabelle.",
    "Von dieser Maschine ist kein Listing gekommen.",
    "verlorene Nachrichten",
    "unbrauchbare",
    "Maschinen",
    "Maschine",
    "Programmseite",
    "Schreiben erlaubt",
    "Version",
    "Grund",
    "ja",
    "nein",
    "Broker",
    "In diesem Werk ist keine Maschine zu hören.",
    "Ö_ffnen",
    "ist schon geöffnet.",
    "wurde mit einem Fehler beendet; die Standardfehlerausgabe nennt ihn.",
};

constexpr HostTexts english{
    "Bottling line",
    "PLC program",
    "RUN",
    "STOP",
    "Start",
    "Stop",
    "Cycle time",
    "work",
    "at most",
    "Open debugger",
    "Close debugger",
    "Language",
    "The debugger speaks it from its next opening on.",
    "Switches",
    "Lamps",
    "Tank",
    "Motor",
    "Delivered",
    "This program has no picture of its machine.",
    "Recording",
    "From the start",
    "Link",
    "connecting",
    "running",
    "slow",
    "lost",
    "refused",
    "answers/s",
    "Watched operands",
    "of them old",
    "Operand",
    "Value",
    "Age",
    "Note",
    "old, of",
    "The debugger's rows keep their last value; this table shows how old it is.",
    "This controller gives no program states; the program page shows \"?\" for them.",
    "program states go to",
    "No listing has been given for this controller.",
    "This machine is far away, behind a broker; the table shows how old its values are here.",
    "No listing has come from this machine.",
    "lost messages",
    "unusable ones",
    "machines",
    "Machine",
    "Program page",
    "May be written",
    "Version",
    "Reason",
    "yes",
    "no",
    "Broker",
    "No machine is heard in this plant.",
    "_Open",
    "is open already.",
    "has ended with an error; standard error names it.",
};

} // namespace

const HostTexts& TextsIn(std::string_view language)
{
    return language == "de" ? german : english;
}

const char* EnvironmentLanguage()
{
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* const value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return std::string_view(value).substr(0, 2) == "de" ? "de" : "en";
        }
    }
    return "en";
}

} // namespace plchost
