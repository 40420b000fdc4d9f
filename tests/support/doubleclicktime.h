#pragma once

#include <glib.h>
#include <wx/settings.h>

#include <functional>
#include <utility>

/// Runs for as long as a click may still become a double click. What the window puts off until then
/// comes before its end when the click was handled before it was begun, else after it. GUI thread.
class DoubleClickTime
{
public:
    /// @param atEnd runs at the end.
    explicit DoubleClickTime(std::function<void()> atEnd = [] {})
        : m_atEnd(std::move(atEnd)),
          m_timer(g_timeout_add(
              static_cast<guint>(wxSystemSettings::GetMetric(wxSYS_DCLICK_MSEC)), End, this))
    {
    }

    ~DoubleClickTime()
    {
        if (!IsOver()) {
            g_source_remove(m_timer);
        }
    }

    DoubleClickTime(const DoubleClickTime&) = delete;
    DoubleClickTime(DoubleClickTime&&) = delete;
    DoubleClickTime& operator=(const DoubleClickTime&) = delete;
    DoubleClickTime& operator=(DoubleClickTime&&) = delete;

    bool IsOver() const { return m_timer == 0; }

private:
    static gboolean End(gpointer self)
    {
        auto* time = static_cast<DoubleClickTime*>(self);
        time->m_timer = 0;
        time->m_atEnd();
        return G_SOURCE_REMOVE;
    }

    std::function<void()> m_atEnd;
    guint m_timer; ///< 0 when it is over.
};
