#include "checks.h"
#include "record.h"
#include "shown.h"
#include "window.h"

#include <optional>

namespace plccheck {

namespace {

/// The greatest of a signed byte: one more would look different in each width.
constexpr std::int32_t greatestByte = 127;

/// Pictures by what is answered: without an answer none changes, the same answer gives the same
/// picture, another one another.
void Shown(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    const Picture unknown = StillPicture(host);
    AnswerAll(host, 1);
    const Picture one = AwaitChange(host, unknown);
    AnswerAll(host, someValue);
    const Picture other = AwaitChange(host, one);
    AnswerAll(host, 1);
    const Picture oneAgain = AwaitChange(host, other);
    host.Require(one == oneAgain, "the same answers do not give the same picture");
    host.Require(
        StillPicture(host) == oneAgain, "the window changes and nothing has been answered");
    host.Destroy();
    host.IsGone();
}

void NewestShown(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    const Picture unknown = StillPicture(host);
    AnswerAll(host, someValue);
    const Picture alone = AwaitChange(host, unknown);
    AnswerAll(host, 1);
    const Picture other = AwaitChange(host, alone);
    for (const std::int32_t value : {greatestByte, 1, someValue}) {
        AnswerAll(host, value);
    }
    host.Require(
        AwaitChange(host, other) == alone,
        "of several answers at once it is not the newest that is shown");
    host.Destroy();
    host.IsGone();
}

/// The place where one variable is shown, found by its answers.
struct Place
{
    Box box;
    std::vector<bool> shape; ///< Of the greatest byte in the place of a 1.
};

std::optional<Place> PlaceOf(TrialHost& host, std::uint16_t key, const Picture& ones)
{
    AnswerKey(host, key, greatestByte);
    const Picture changed = AwaitChange(host, ones);
    const auto box = Difference(ones, changed);
    if (!host.Require(box.has_value(), "the window changes its size by an answer")) {
        return std::nullopt;
    }
    AnswerKey(host, key, 1);
    host.Require(
        AwaitChange(host, changed) == ones,
        "an answer for " + TrialHost::Operands().at(key) + " changes more than its own row");
    return Place{*box, ChangedPixels(ones, changed, *box)};
}

/// Each variable has its row, in the order of the list, and equal values look alike in all widths.
void InItsRow(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    const Picture unknown = StillPicture(host);
    AnswerAll(host, 1);
    const Picture ones = AwaitChange(host, unknown);
    std::optional<Place> above;
    for (const auto& [key, operand] : host.Served()) {
        const auto place = PlaceOf(host, key, ones);
        if (!place) {
            return;
        }
        if (above) {
            host.Require(
                place->box.y >= above->box.y + above->box.height,
                "an answer for " + operand + " is not shown below the row before");
            host.Require(
                place->shape == above->shape,
                operand + " answered with 127 does not look like the row before answered with 127");
        }
        above = place;
    }
    host.Destroy();
    host.IsGone();
}

void AnswerSteps(TrialHost& host, const plc::StepRange& steps, const plc::StepState& state)
{
    host.Reports().Step("answers for every step");
    const std::vector<plc::StepState> states(plc::CountSteps(steps), state);
    const CMD_DATA answer = plchost::MakeProgramStateAnswer(steps, states);
    host.Require(
        host.Answer(plchost::AnswerKind::ProgramState, &answer) == 1,
        "an answer for steps is not taken");
}

void StatesShown(TrialHost& host)
{
    if (!host.Open()) {
        return;
    }
    host.Reports().Step("turns to the page of the program");
    if (!host.Require(TurnToPage(DebuggerWindow(), 1), "the window has no second page") ||
        !host.Await("a request for program states", [&] { return host.Steps().has_value(); })) {
        return;
    }
    const plc::StepRange steps = *host.Steps();
    host.Require(
        steps.first == TrialHost::programSteps.first && steps.last == TrialHost::programSteps.last,
        "not the steps of the program, all on show, are asked for, but " +
            std::to_string(steps.first) + " to " + std::to_string(steps.last));
    const Picture unknown = StillPicture(host);
    AnswerSteps(host, steps, {true, 1});
    const Picture one = AwaitChange(host, unknown);
    AnswerSteps(host, steps, {false, someValue});
    const Picture other = AwaitChange(host, one);
    AnswerSteps(host, steps, {true, 1});
    host.Require(AwaitChange(host, other) == one, "the same states do not give the same picture");
    host.Reports().Step("turns to the page of the variables");
    TurnToPage(DebuggerWindow(), 0);
    host.Await("a request to stop program states", [&] { return !host.Steps().has_value(); });
    host.Destroy();
    host.IsGone();
}

} // namespace

const std::vector<Check>& ShownChecks()
{
    static const std::vector<Check> checks{
        {"answers-shown", "the window shows what is answered, and nothing else", Shown},
        {"newest-shown", "of several answers at once the newest is shown", NewestShown},
        {"shown-in-its-row", "each value is shown in its row, whatever its width", InItsRow},
        {"states-shown", "the page of the program asks for its steps and shows them", StatesShown},
        {"wx-answers-shown",
         "in a wxWidgets host the window shows what is answered",
         Shown,
         HostKind::Wx},
    };
    return checks;
}

} // namespace plccheck
