#include "shown.h"

#include "window.h"

#include <algorithm>

namespace plccheck {

namespace {

/// Several ticks of a debugger, which empties its queues ten times each second.
constexpr std::chrono::milliseconds stillFor{400};

bool IsBlank(const Picture& picture)
{
    const auto& pixels = picture.pixels;
    return std::adjacent_find(pixels.begin(), pixels.end(), std::not_equal_to<>()) == pixels.end();
}

} // namespace

Picture StillPicture(TrialHost& host)
{
    using Clock = std::chrono::steady_clock;
    Picture last;
    auto since = Clock::now();
    host.Await("the window to stand still", [&] {
        Picture now = PictureOf(DebuggerWindow());
        if (now != last || IsBlank(now)) {
            last = std::move(now);
            since = Clock::now();
        }
        return Clock::now() - since >= stillFor;
    });
    return last;
}

Picture AwaitChange(TrialHost& host, const Picture& before)
{
    host.Await("the window to show answers", [&] { return PictureOf(DebuggerWindow()) != before; });
    return StillPicture(host);
}

void AnswerKey(TrialHost& host, std::uint16_t key, std::int32_t value)
{
    const CMD_DATA answer = PlcMakeReadAnswer(key, value);
    host.Require(host.Answer(plchost::AnswerKind::ReadVar, &answer) == 1, "an answer is not taken");
}

void AnswerAll(TrialHost& host, std::int32_t value)
{
    host.Reports().Step("answers for every variable");
    for (const auto& [key, operand] : host.Served()) {
        AnswerKey(host, key, value);
    }
}

} // namespace plccheck
