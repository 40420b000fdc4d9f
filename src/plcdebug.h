#pragma once

#include <wx/app.h>

#include <atomic>

class PlcDebugFrame;

/// The application object of a host that has none of its own.
class CPlcDebugApp : public wxApp
{
};

wxDECLARE_APP(CPlcDebugApp);

/// The one frame, or null. Set by ExportCreatePlcDebugger() on the GUI thread, read by any thread.
extern std::atomic<PlcDebugFrame*> m_pDebugFrame;

/// True when the plug-in itself has started the application object. GUI thread.
extern bool m_bOwnsTheApp;

/// Takes a frame that is being deleted out of everything that knows it, and waits for the answer
/// exports that are still using it. GUI thread.
void ForgetFrame(PlcDebugFrame* frame);

/// Deletes a frame as soon as no plug-in code is on the GUI thread's stack any more. GUI thread.
void DeleteFrameLater(PlcDebugFrame* frame);
