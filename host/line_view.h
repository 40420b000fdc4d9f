#pragma once

#include "bottling/bottling.h"
#include "texts.h"

#include <gtkmm/drawingarea.h>

#include <optional>
#include <string>

// The picture of the bottling line. GUI thread.

namespace plchost {

class LineView : public Gtk::DrawingArea
{
public:
    LineView();

    void SetTexts(const HostTexts& texts);
    /// @param line nothing: there is only a remark that the program has no picture.
    void Show(std::optional<samples::BottlingView> line);

protected:
    bool on_draw(const Cairo::RefPtr<Cairo::Context>& cairo) override;

private:
    void DrawLine(const Cairo::RefPtr<Cairo::Context>& cairo) const;

    const HostTexts* m_texts; ///< Lives as long as the program.
    std::optional<samples::BottlingView> m_line;
};

} // namespace plchost
