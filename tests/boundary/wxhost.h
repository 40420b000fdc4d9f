#pragma once

#include <wx/frame.h>

// The wxWidgets host from inside: only in the program that is one. GUI thread.

/// The host's own window, the application's top window.
wxFrame& HostFrame();

/// How often the host's own Exit command was run.
int HostExitCommands();

/// How often the application object's OnExit() was run.
int HostAppExits();
