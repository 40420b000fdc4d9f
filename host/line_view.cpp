#include "line_view.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace plchost {

namespace {

using Cairo::Context;
using Canvas = Cairo::RefPtr<Context>;
using samples::BottlingView;

// NOLINTBEGIN(cppcoreguidelines-avoid-magic-numbers): a drawing is made of coordinates.

/// The picture is drawn in these units and scaled into the window.
constexpr double pictureWidth = 760;
constexpr double pictureHeight = 500;

constexpr double beltLeft = 50;
constexpr double beltLength = 640;
constexpr double beltTop = 392;
constexpr double beltHeight = 26;
constexpr double bottleWidth = 44;
constexpr double bottleBody = 100;
constexpr double bottleNeck = 30;
constexpr double tankTop = 50;
constexpr double tankHeight = 130;
constexpr double tankWidth = 180;
constexpr double nozzleBottom = 248;
constexpr double captionBelowBelt = 67;
constexpr double pi = 3.14159265358979;

struct Colour
{
    double red, green, blue;
};

constexpr Colour ground{0.965, 0.970, 0.978};
constexpr Colour ink{0.18, 0.21, 0.26};
constexpr Colour faint{0.55, 0.59, 0.65};
constexpr Colour steel{0.74, 0.77, 0.81};
constexpr Colour rubber{0.32, 0.35, 0.40};
constexpr Colour glass{0.86, 0.93, 0.95};
constexpr Colour liquid{0.20, 0.52, 0.80};
constexpr Colour active{0.16, 0.68, 0.38};
constexpr Colour idle{0.80, 0.82, 0.85};

double BeltX(double position)
{
    return beltLeft + position * beltLength;
}

void Use(const Canvas& cairo, const Colour& colour)
{
    cairo->set_source_rgb(colour.red, colour.green, colour.blue);
}

void Fill(const Canvas& cairo, const Colour& colour)
{
    Use(cairo, colour);
    cairo->fill_preserve();
    Use(cairo, ink);
    cairo->set_line_width(1.5);
    cairo->stroke();
}

void Bar(const Canvas& cairo, double x, double y, double width, double height, const Colour& colour)
{
    cairo->rectangle(x, y, width, height);
    Use(cairo, colour);
    cairo->fill();
}

enum class Align
{
    Left,
    Middle
};

void Write(
    const Canvas& cairo, double x, double y, const std::string& text, Align align = Align::Middle)
{
    Cairo::TextExtents extents{};
    cairo->set_font_size(14);
    cairo->get_text_extents(text, extents);
    cairo->move_to(align == Align::Middle ? x - extents.width / 2 : x, y);
    Use(cairo, ink);
    cairo->show_text(text);
}

void DrawRoller(const Canvas& cairo, double x, double turn)
{
    const double y = beltTop + beltHeight / 2;
    const double radius = beltHeight / 2 - 3;
    cairo->arc(x, y, radius, 0, 2 * pi);
    Fill(cairo, steel);
    cairo->move_to(x - radius * std::cos(turn), y - radius * std::sin(turn));
    cairo->line_to(x + radius * std::cos(turn), y + radius * std::sin(turn));
    cairo->stroke();
}

void DrawBelt(const Canvas& cairo, const BottlingView& line, const HostTexts& texts)
{
    const double left = beltLeft;
    const double right = beltLeft + beltLength;
    const double radius = beltHeight / 2;
    for (const double leg : {0.25, 0.7}) {
        Bar(cairo, BeltX(leg) - 5, beltTop + beltHeight, 10, 60, steel);
    }
    Bar(cairo, left, beltTop + beltHeight + 60, beltLength, 3, steel);
    cairo->begin_new_path();
    cairo->arc(left, beltTop + radius, radius, pi / 2, 3 * pi / 2);
    cairo->arc(right, beltTop + radius, radius, -pi / 2, pi / 2);
    cairo->close_path();
    Fill(cairo, rubber);

    // The cleats travel with the belt, so that its motion is seen.
    constexpr int cleats = 32;
    const double distance = beltLength / cleats;
    const double shift = std::fmod(line.beltTravel * beltLength, distance);
    for (int i = 0; i < cleats; ++i) {
        Bar(cairo, left + i * distance + shift, beltTop + 2, 2, 5, faint);
    }

    constexpr int rollers = 6;
    for (int i = 0; i < rollers; ++i) {
        DrawRoller(
            cairo, left + i * beltLength / (rollers - 1), line.beltTravel * beltLength / radius);
    }

    cairo->arc(left, beltTop + 62, 18, 0, 2 * pi);
    Fill(cairo, line.motorOn ? active : idle);
    Write(cairo, left, beltTop + captionBelowBelt, "M");
    Write(cairo, left + 26, beltTop + captionBelowBelt, texts.motor, Align::Left);
}

/// The outline of a bottle that stands on the belt.
void BottlePath(const Canvas& cairo, double x)
{
    const double half = bottleWidth / 2;
    const double shoulder = beltTop - bottleBody;
    const double top = shoulder - bottleNeck;
    cairo->begin_new_path();
    cairo->move_to(x - half, beltTop);
    cairo->line_to(x - half, shoulder);
    cairo->curve_to(x - half, shoulder - 15, x - 8, shoulder - 10, x - 8, top);
    cairo->line_to(x + 8, top);
    cairo->curve_to(x + 8, shoulder - 10, x + half, shoulder - 15, x + half, shoulder);
    cairo->line_to(x + half, beltTop);
    cairo->close_path();
}

void DrawBottle(const Canvas& cairo, const samples::Bottle& bottle)
{
    const double x = BeltX(bottle.position);
    const double height = bottle.level * (bottleBody + 6);
    cairo->save();
    BottlePath(cairo, x);
    cairo->clip();
    Bar(cairo, x - bottleWidth, beltTop - 150, 2 * bottleWidth, 150, glass);
    Bar(cairo, x - bottleWidth, beltTop - height, 2 * bottleWidth, height, liquid);
    cairo->restore();
    BottlePath(cairo, x);
    Use(cairo, ink);
    cairo->set_line_width(1.5);
    cairo->stroke();
}

/// A light barrier beside the belt.
void DrawSensor(const Canvas& cairo, double position, bool occupied)
{
    const double x = BeltX(position);
    cairo->move_to(x - 9, beltTop + beltHeight + 18);
    cairo->line_to(x + 9, beltTop + beltHeight + 18);
    cairo->line_to(x, beltTop + beltHeight + 4);
    cairo->close_path();
    Fill(cairo, occupied ? active : idle);
}

void DrawTank(const Canvas& cairo, const BottlingView& line, const HostTexts& texts)
{
    const double x = BeltX(samples::fillPosition);
    const double left = x - tankWidth / 2;
    const double height = std::clamp(line.tankLevel, 0.0, 1.0) * tankHeight;

    // The supply comes from the left into the top of the tank.
    Bar(cairo, left - 90, tankTop - 18, 110, 10, line.supplyOpen ? liquid : steel);
    Bar(cairo, left + 12, tankTop - 18, 10, 18, line.supplyOpen ? liquid : steel);

    Bar(cairo, left, tankTop, tankWidth, tankHeight, glass);
    if (line.supplyOpen) {
        Bar(cairo, left + 14, tankTop, 6, tankHeight - height, liquid);
    }
    Bar(cairo, left, tankTop + tankHeight - height, tankWidth, height, liquid);
    cairo->rectangle(left, tankTop, tankWidth, tankHeight);
    Use(cairo, ink);
    cairo->set_line_width(2);
    cairo->stroke();
    const auto percent = std::to_string(std::lround(line.tankLevel * 100));
    Write(cairo, x + tankWidth / 2 + 12, tankTop + 16, texts.tank, Align::Left);
    Write(cairo, x + tankWidth / 2 + 12, tankTop + 36, percent + " %", Align::Left);

    // The fill valve: two triangles that meet.
    const double y = (tankTop + tankHeight + nozzleBottom) / 2;
    Bar(cairo, x - 4, tankTop + tankHeight, 8, nozzleBottom - tankTop - tankHeight, steel);
    cairo->move_to(x - 14, y - 12);
    cairo->line_to(x + 14, y - 12);
    cairo->line_to(x - 14, y + 12);
    cairo->line_to(x + 14, y + 12);
    cairo->close_path();
    Fill(cairo, line.valveOpen ? active : idle);
    if (line.valveOpen) {
        Bar(cairo, x - 2, nozzleBottom, 4, beltTop - nozzleBottom - 4, liquid);
    }
}

// NOLINTEND(cppcoreguidelines-avoid-magic-numbers)

} // namespace

LineView::LineView() : m_texts(&TextsIn(""))
{
    set_size_request(static_cast<int>(pictureWidth), static_cast<int>(pictureHeight));
    set_hexpand(true);
    set_vexpand(true);
}

void LineView::SetTexts(const HostTexts& texts)
{
    m_texts = &texts;
    queue_draw();
}

void LineView::Show(std::optional<BottlingView> line)
{
    m_line = std::move(line);
    queue_draw();
}

bool LineView::on_draw(const Canvas& cairo)
{
    Use(cairo, ground);
    cairo->paint();
    const double width = get_allocated_width();
    const double height = get_allocated_height();
    const double scale = std::min(width / pictureWidth, height / pictureHeight);
    cairo->translate((width - scale * pictureWidth) / 2, (height - scale * pictureHeight) / 2);
    cairo->scale(scale, scale);
    cairo->select_font_face("Sans", Cairo::FONT_SLANT_NORMAL, Cairo::FONT_WEIGHT_NORMAL);
    if (m_line) {
        DrawLine(cairo);
    } else {
        Write(cairo, pictureWidth / 2, pictureHeight / 2, m_texts->noProcess);
    }
    return true;
}

void LineView::DrawLine(const Canvas& cairo) const
{
    DrawBelt(cairo, *m_line, *m_texts);
    for (const samples::Bottle& bottle : m_line->bottles) {
        DrawBottle(cairo, bottle);
    }
    DrawTank(cairo, *m_line, *m_texts);
    DrawSensor(cairo, samples::fillPosition, m_line->bottleAtValve);
    DrawSensor(cairo, samples::outletPosition, m_line->bottleAtOutlet);
    Write(
        cairo,
        BeltX(samples::outletPosition),
        beltTop + captionBelowBelt,
        std::string(m_texts->delivered) + ' ' + std::to_string(m_line->delivered));
}

} // namespace plchost
