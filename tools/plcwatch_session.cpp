#include "plcwatch_session.h"

#include "file.h"
#include "time_of_day.h"

#include <algorithm>
#include <mutex>
#include <stdexcept>
#include <utility>

namespace plcwatch {

namespace {

using std::chrono::duration_cast;
using std::chrono::milliseconds;

/// How long a machine may take for one value, unless --for says otherwise.
constexpr milliseconds patience{std::chrono::seconds(10)};

// What a terminal understands.
constexpr const char* clearToEndOfLine = "\x1b[K";
constexpr const char* clearBelow = "\x1b[J";
constexpr const char* cutLongLines = "\x1b[?7l";
constexpr const char* wrapLongLines = "\x1b[?7h";

std::string LinesUp(std::size_t count)
{
    return count == 0 ? "" : "\x1b[" + std::to_string(count) + 'A';
}

} // namespace

void Session::Row::OnUnreadable(const std::string& theReason)
{
    const std::lock_guard lock(m_mutex);
    m_reason = theReason;
}

std::string Session::Row::TakeReason()
{
    const std::lock_guard lock(m_mutex);
    return std::exchange(m_reason, {});
}

Session::Session(
    const Options& options, std::unique_ptr<plclink::Source> source, Surroundings around)
    : m_options(options), m_around(std::move(around)), m_link(std::move(source))
{
}

void Session::Add(const Variable& variable)
{
    Row& row = *m_rows.emplace_back(std::make_unique<Row>(variable));
    if (const auto known = m_link.Check(variable.operand)) {
        m_link.Watch(row, variable.operand);
    } else {
        row.OnUnreadable(known.Message());
    }
}

/// A sentence when messages have been lost since the last one.
void Session::TellLosses()
{
    const std::uint64_t lost = m_link.Losses().lost;
    if (lost != m_toldLost) {
        m_toldLost = lost;
        m_around.tell("messages lost on the way so far: " + std::to_string(lost));
    }
}

void Session::LookForRefusals()
{
    for (const auto& row : m_rows) {
        if (const std::string reason = row->TakeReason(); !reason.empty()) {
            row->isUnknown = true;
            m_around.tell(NameOf(row->variable) + ": " + reason);
        }
    }
}

KnownValue Session::ValueOf(const Row& row) const
{
    KnownValue known{NameOf(row.variable)};
    if (const auto reading = m_link.Newest(row.variable.operand)) {
        const ShownValue shown = Show(row.variable, reading->value);
        known.text = shown.text;
        known.raw = shown.raw;
        known.age =
            std::max(duration_cast<milliseconds>(Clock::now() - reading->taken), milliseconds{0});
    }
    return known;
}

bool Session::AllAreKnown() const
{
    return std::all_of(m_rows.begin(), m_rows.end(), [this](const auto& row) {
        return row->isUnknown || m_link.Newest(row->variable.operand);
    });
}

int Session::Watch(const std::vector<Variable>& list)
{
    for (const Variable& variable : list) {
        Add(variable);
    }
    if (m_options.publish.address) {
        Publish(list);
    }
    m_link.Start();
    const bool isTable = m_around.isTerminal && !m_options.plain && !m_options.json;
    for (;;) {
        LookForRefusals();
        TellLosses();
        // What is known is printed before the end.
        const bool isOver =
            (m_options.limit && IsOver(*m_options.limit)) || (m_options.once && AllAreKnown());
        if (!(isTable ? PrintTable() : PrintChanges())) {
            return exitGood;
        }
        if (m_isPublishedByAnother) {
            return exitNoLink;
        }
        if (isOver) {
            return EndStatus();
        }
        if (const auto ended = WaitForNextLook()) {
            return *ended;
        }
    }
}

void Session::Publish(const std::vector<Variable>& list)
{
    std::string listing;
    if (!m_options.listing.empty()) {
        auto read = base::ReadFile(m_options.listing);
        if (!read) {
            throw std::runtime_error(read.Message());
        }
        listing = *std::move(read);
    }
    auto order = plchost::MakePublishOrder(
        m_options.publish, m_options.access, std::move(listing), "plcwatch");
    if (!order) {
        throw std::runtime_error(order.Message());
    }
    for (const Variable& variable : list) {
        order->operands.push_back(variable.operand);
    }
    m_publisher.emplace(
        m_link, *std::move(order), m_around.tell, [this](const std::string& sentence) {
            m_around.tell(sentence);
            m_isPublishedByAnother = true;
        });
    m_publisher->Start();
}

int Session::EndStatus() const
{
    const plclink::LinkStatus status = m_link.State().status;
    if (status != plclink::LinkStatus::Running && status != plclink::LinkStatus::Slow) {
        return exitNoLink;
    }
    const bool someAreUnknown =
        std::any_of(m_rows.begin(), m_rows.end(), [](const auto& row) { return row->isUnknown; });
    if (someAreUnknown) {
        return exitUnknownOperand;
    }
    return m_options.once && !AllAreKnown() ? exitNoLink : exitGood;
}

bool Session::PrintChanges()
{
    std::string text;
    const std::string time = TimeText();
    const plclink::LinkState state = m_link.State();
    if (!m_printedState || !(*m_printedState == state)) {
        m_printedState = state;
        text += (m_options.json ? LinkJson(time, state) : LinkLine(time, state)) + '\n';
    }
    for (const auto& row : m_rows) {
        const KnownValue value = ValueOf(*row);
        const bool waitsForIt = m_options.once && !value.raw && !row->isUnknown;
        if (value.text == row->printed || waitsForIt) {
            continue;
        }
        row->printed = value.text;
        text += (m_options.json ? ValueJson(time, value) : ValueLine(time, value)) + '\n';
    }
    return m_around.print(text);
}

bool Session::PrintTable()
{
    std::vector<KnownValue> values;
    for (const auto& row : m_rows) {
        values.push_back(ValueOf(*row));
    }
    std::string text = cutLongLines + LinesUp(m_tableLines);
    const auto lines = Table(m_options.machine, m_link.State(), values, m_around.height);
    for (const std::string& line : lines) {
        text += line + clearToEndOfLine + '\n';
    }
    m_tableLines = lines.size();
    return m_around.print(text + clearBelow + wrapLongLines);
}

std::string Session::TimeText() const
{
    if (!m_options.clock) {
        return SecondsText(duration_cast<milliseconds>(Clock::now() - m_start));
    }
    const std::string time = base::TimeOfDay(std::chrono::system_clock::now());
    return m_options.json ? Quoted(time) : time;
}

bool Session::IsOver(milliseconds limit) const
{
    return Clock::now() - m_start >= limit;
}

std::optional<int> Session::WaitForNextLook()
{
    const auto left =
        m_options.limit.value_or(m_options.every) -
        (m_options.limit ? duration_cast<milliseconds>(Clock::now() - m_start) : milliseconds{0});
    return m_around.wait(std::clamp(left, milliseconds{1}, m_options.every));
}

std::optional<int> Session::Await(const std::function<bool()>& done)
{
    const milliseconds limit = m_options.limit.value_or(patience);
    for (;;) {
        LookForRefusals();
        if (done()) {
            return std::nullopt;
        }
        if (IsOver(limit)) {
            m_around.tell("the machine does not answer (" + StateText(m_link.State()) + ')');
            return exitNoLink;
        }
        if (const auto ended = m_around.wait(milliseconds{10})) {
            return ended;
        }
    }
}

int Session::Read()
{
    Add(*m_options.read);
    m_link.Start();
    if (const auto ended = Await([this] { return AllAreKnown(); })) {
        return *ended;
    }
    const Row& row = *m_rows.front();
    if (row.isUnknown) {
        return exitUnknownOperand;
    }
    const KnownValue value = ValueOf(row);
    m_around.print((m_options.json ? ValueJson(TimeText(), value) : value.text) + '\n');
    return exitGood;
}

int Session::Write()
{
    const WriteOrder& order = *m_options.write;
    if (const auto known = m_link.Check(order.variable.operand); !known) {
        m_around.tell(known.Message());
        return exitUnknownOperand;
    }
    m_link.Start();
    const auto isThere = [this] { return m_link.State().status == plclink::LinkStatus::Running; };
    if (const auto ended = Await(isThere)) {
        return *ended;
    }

    // The end may come when this has gone.
    struct End
    {
        std::atomic<bool> isThere{false};
        base::Result<void> done;
    };

    const auto end = std::make_shared<End>();
    m_link.Write(order.variable.operand, order.value, [end](const base::Result<void>& done) {
        end->done = done;
        end->isThere = true;
    });
    if (const auto ended = Await([&end] { return end->isThere.load(); })) {
        return *ended == exitNoLink ? exitNotWritten : *ended;
    }
    if (!end->done) {
        m_around.tell(end->done.Message());
        return exitNotWritten;
    }
    return exitGood;
}

} // namespace plcwatch
