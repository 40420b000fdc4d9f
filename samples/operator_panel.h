#pragma once

#include <string_view>

// Switches and lamps of a sample machine, for a window that draws them. Values. Any thread.

namespace samples {

/// A switch or button: a bit that the operator's window writes into the image.
struct PanelSwitch
{
    std::string_view operand;
    std::string_view german;
    std::string_view english;
    bool initially; ///< What the process sets at power-on, and what a button goes back to.
    bool isButton;  ///< Holds its other state only while it is pressed; else it latches.
};

/// A lamp or actuator: a bit that the program writes.
struct PanelLamp
{
    std::string_view operand;
    std::string_view german;
    std::string_view english;
};

} // namespace samples
