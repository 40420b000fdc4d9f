#include "publisher.h"

#include "publication.h"
#include "random_id.h"
#include "time_of_day.h"
#include "topics.h"
#include "viewers.h"
#include "write_judge.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <utility>

namespace plcremote {

namespace {

using Clock = plclink::Clock;
using Time = Clock::time_point;

/// So long a program that has just been let in listens whether another is this machine already:
/// that one would speak three times meanwhile.
constexpr milliseconds introduction{1000};

/// How many messages are looked at in one turn; a flood is dropped.
constexpr int mostInTurn = 200;

/// How long a write waits for the value before it.
constexpr milliseconds longestLook{500};

constexpr const char* goneReason = "the machine's program has ended or its network is gone";
constexpr const char* endedReason = "the machine's program has ended";

/// Keeps an operand being read; what comes is looked up in the link.
struct Watching : plclink::Watcher
{
    bool OnReading(const plclink::Reading&) override { return true; }

    void OnUnreadable(const std::string&) override {}
};

/// A write that is under way.
struct Writing
{
    Viewer viewer{};
    WriteMessage message{};
    std::optional<std::uint32_t> before{};
    Time began{};
    std::optional<base::Result<void>> end{}; ///< Nothing yet.
};

/// What other threads have told. Lives as long as anybody may.
struct Inbox
{
    std::mutex mutex; ///< Guards what follows, for a look or a change only.
    std::optional<StepStatesMessage> steps{};
    bool stepsTaken = false;                             ///< By somebody at the machine.
    std::map<std::string, base::Result<void>> written{}; ///< By id.
};

/// What of a list can be told.
std::vector<plc::Operand> FirstOf(const std::vector<plc::Operand>& operands)
{
    const std::size_t count = std::min(operands.size(), mostOperands);
    return {operands.begin(), operands.begin() + static_cast<std::ptrdiff_t>(count)};
}

std::string ValueText(const std::optional<std::uint32_t>& value)
{
    return value ? std::to_string(*value) : "?";
}

} // namespace

class Publisher::Impl : private plclink::Client, private ConnectionEvents
{
public:
    Impl(plclink::MachineLink& link, PublishOrder order, Log log, Log end)
        : m_link(link), m_order(std::move(order)), m_log(std::move(log)), m_end(std::move(end)),
          m_session(RandomId()), m_publication(m_session, Clock::now()),
          m_judge(m_order.writeList, m_session), m_viewers(FirstOf(m_order.operands))
    {
        if (m_order.listing.size() > longestListing) {
            m_log("the program debug file is larger than 8 MB and is not published");
            m_order.listing.clear();
        }
        if (m_order.operands.size() > mostOperands) {
            m_log(
                "of the list only the first " + std::to_string(mostOperands) +
                " operands are published");
        }
        m_link.Join(*this);
        m_connection.emplace(ConnectionOrder{
            m_order.address,
            m_order.access,
            {TopicOf("values"),
             ViewersTopic("watch"),
             ViewersTopic("steps"),
             ViewersTopic("write")},
            LastWill{TopicOf("state"), Text(State({plclink::LinkStatus::Lost, goneReason}))}});
    }

    ~Impl() override
    {
        if (m_isIntroduced && !m_hasEnded) {
            m_connection->Publish(
                TopicOf("state"), Text(State({plclink::LinkStatus::Lost, endedReason})), true);
        }
        m_connection.reset();
        LetGo();
        m_link.Leave(*this);
    }

    Impl(const Impl&) = delete;
    Impl(Impl&&) = delete;
    Impl& operator=(const Impl&) = delete;
    Impl& operator=(Impl&&) = delete;

    void Start() { m_connection->Start(*this); }

    std::string StepsUser() const
    {
        const std::lock_guard lock(m_stepsUserMutex);
        return m_stepsUser;
    }

private:
    std::string TopicOf(std::string_view kind) const { return MachineTopic(m_order.address, kind); }

    std::string ViewersTopic(std::string_view kind) const
    {
        return ViewerTopic(m_order.address, kind, {"+", "+"});
    }

    StateMessage State(const plclink::LinkState& link) const
    {
        return {
            m_session,
            link,
            m_order.version,
            m_link.TurnTime(),
            !m_order.listing.empty(),
            m_order.writeList.Lines()};
    }

    // Of the source's thread, and of who asks for steps.

    bool OnSteps(const plc::StepRange& range, const std::vector<plc::StepState>& states) override
    {
        const std::lock_guard lock(m_inbox->mutex);
        m_inbox->steps = StepStatesMessage{range, states};
        return true;
    }

    void OnStepsTaken() override
    {
        const std::lock_guard lock(m_inbox->mutex);
        m_inbox->stepsTaken = true;
    }

    // Of the connection's thread.

    void OnConnected() override
    {
        m_log(
            "published on the broker as " + m_order.address.plant + '/' + m_order.address.machine);
        m_connected = Clock::now();
        m_toldState.reset();
        m_publication.TellAllNext();
    }

    void OnDisconnected(const std::string& reason, bool) override
    {
        m_log("not published: " + reason);
        m_connected.reset();
        LetGo();
    }

    void OnTurn() override
    {
        m_messagesInTurn = 0;
        if (m_hasEnded) {
            return;
        }
        const Time now = Clock::now();
        if (m_viewers.Expire(now)) {
            ServeViewers();
        }
        TakeInbox(now);
        if (!m_connected) {
            return;
        }
        if (!m_isIntroduced && now - *m_connected < introduction) {
            return;
        }
        m_isIntroduced = true;
        TellState();
        TellValues(now);
        TellSteps();
        EndWrites(now);
    }

    void OnMessage(std::string_view topic, std::string_view payload, bool isRetained) override
    {
        if (m_hasEnded) {
            return;
        }
        const auto parsed = ParseTopic(m_order.address, topic);
        if (++m_messagesInTurn > mostInTurn) {
            Drop("flood", "too many come at a time");
            return;
        }
        const auto taken = !parsed || isRetained ? base::Failure{"nobody has asked for it"}
                                                 : Take(*parsed, payload);
        if (!taken) {
            Drop(parsed ? parsed->kind : "", taken.Message());
        }
    }

    /// Says it once of each kind.
    void Drop(const std::string& kind, const std::string& reason)
    {
        if (m_droppedKinds.insert(kind).second) {
            m_log("a message \"" + kind + "\" is dropped, as all like it: " + reason);
        }
    }

    base::Result<void> Take(const Topic& topic, std::string_view payload)
    {
        if (topic.kind == "values") {
            return TakeValues(payload);
        }
        if (!topic.viewer) {
            return base::Failure{"nobody has asked for its topic"};
        }
        if (topic.kind == "watch") {
            return TakeWatch(*topic.viewer, payload);
        }
        if (topic.kind == "steps") {
            return TakeSteps(*topic.viewer, payload);
        }
        return TakeWrite(*topic.viewer, payload);
    }

    /// Somebody says that he is this machine; perhaps that is us.
    base::Result<void> TakeValues(std::string_view payload)
    {
        const auto values = ReadValues(payload);
        if (!values) {
            return base::Failure{values.Message()};
        }
        const milliseconds running = m_publication.RunningTime(Clock::now());
        const bool isOther = values->session != m_session;
        // Of two that speak the younger one goes.
        const bool isOlder = values->running > running ||
                             (values->running == running && values->session > m_session);
        if (isOther && (!m_isIntroduced || isOlder)) {
            m_hasEnded = true;
            LetGo();
            m_end(
                "another program publishes " + m_order.address.plant + '/' +
                m_order.address.machine + " already");
        }
        return {};
    }

    base::Result<void> TakeWatch(const Viewer& viewer, std::string_view payload)
    {
        auto message = ReadWatch(payload);
        if (!message) {
            return base::Failure{message.Message()};
        }
        const Time now = Clock::now();
        const auto taken = m_viewers.Watch(viewer, std::move(message->operands), now);
        const bool wasRefused = m_refusedViewers.erase(viewer) > 0;
        if (!taken || wasRefused) {
            Answer(viewer, RefusalMessage{RefusalMessage::Of::Watch, taken ? "" : taken.Message()});
        }
        if (!taken && m_refusedViewers.size() < mostViewers) {
            m_refusedViewers.insert(viewer);
        }
        ServeViewers();
        return {};
    }

    base::Result<void> TakeSteps(const Viewer& viewer, std::string_view payload)
    {
        const auto message = ReadSteps(payload);
        if (!message) {
            return base::Failure{message.Message()};
        }
        m_viewers.WatchSteps(viewer, message->range, Clock::now());
        ServeSteps();
        return {};
    }

    base::Result<void> TakeWrite(const Viewer& viewer, std::string_view payload)
    {
        const auto message = ReadWrite(payload);
        if (!message) {
            return base::Failure{message.Message()};
        }
        const Time now = Clock::now();
        Writing writing{viewer, *message, std::nullopt, now};
        auto judged = m_judge.Judge(viewer.user, *message, m_publication.RunningTime(now));
        if (judged) {
            judged = m_link.Check(message->operand);
        }
        if (!judged) {
            End(writing, judged);
            return {};
        }
        // What it was before is read, if nobody does so already.
        Watch(message->operand);
        m_writing.push_back(std::move(writing));
        return {};
    }

    /// All that is still to be done for viewers who are no more.
    void LetGo()
    {
        m_viewers.Clear();
        m_writing.clear();
        m_link.WatchSteps(*this, std::nullopt);
        m_askedSteps.reset();
        for (const auto& entry : m_watchings) {
            m_link.Unwatch(*entry.second);
        }
        m_watchings.clear();
        m_refused.clear();
        SetStepsUser("");
    }

    /// Watches what the viewers want, and what everybody is told, and nothing else.
    void ServeViewers()
    {
        std::set<std::string> wanted;
        for (const plc::Operand& operand : m_viewers.Operands()) {
            if (wanted.insert(plc::OperandName(operand)).second && Watch(operand)) {
                m_publication.TellAllNext();
            }
        }
        for (const Writing& writing : m_writing) {
            wanted.insert(plc::OperandName(writing.message.operand));
        }
        for (auto entry = m_refused.begin(); entry != m_refused.end();) {
            entry = wanted.count(entry->first) == 0 ? m_refused.erase(entry) : std::next(entry);
        }
        for (auto entry = m_watchings.begin(); entry != m_watchings.end();) {
            if (wanted.count(entry->first) == 0) {
                m_link.Unwatch(*entry->second);
                entry = m_watchings.erase(entry);
            } else {
                ++entry;
            }
        }
        ServeSteps();
    }

    /// @return whether it was not watched before.
    bool Watch(const plc::Operand& operand)
    {
        const std::string name = plc::OperandName(operand);
        if (m_watchings.count(name) != 0 || m_refused.count(name) != 0) {
            return false;
        }
        if (const auto known = m_link.Check(operand); !known) {
            m_refused.emplace(name, plclink::WatchedOperand{operand, {}, known.Message()});
            return true;
        }
        auto watching = std::make_unique<Watching>();
        m_link.Watch(*watching, operand);
        m_watchings.emplace(name, std::move(watching));
        return true;
    }

    /// The steps go to the viewer who asked last.
    void ServeSteps()
    {
        const auto viewer = m_viewers.StepsViewer();
        const auto range = m_viewers.Steps();
        if (m_stepsViewer && viewer && !(m_stepsViewer == viewer)) {
            Answer(
                *m_stepsViewer,
                RefusalMessage{RefusalMessage::Of::Steps, "they go to " + viewer->user + " now"});
        }
        m_stepsViewer = viewer;
        SetStepsUser(viewer ? viewer->user : "");
        const bool isSame =
            range.has_value() == m_askedSteps.has_value() &&
            (!range || (range->first == m_askedSteps->first && range->last == m_askedSteps->last));
        if (!isSame) {
            m_askedSteps = range;
            m_link.WatchSteps(*this, range);
        }
    }

    void SetStepsUser(const std::string& user)
    {
        const std::lock_guard lock(m_stepsUserMutex);
        m_stepsUser = user;
    }

    /// Somebody at the machine looks at the steps now.
    void LoseSteps(Time now)
    {
        const auto viewer = m_viewers.StepsViewer();
        if (!viewer) {
            return;
        }
        Answer(
            *viewer,
            RefusalMessage{RefusalMessage::Of::Steps, "they are shown at the machine now"});
        m_viewers.WatchSteps(*viewer, std::nullopt, now);
        m_stepsViewer.reset();
        m_askedSteps.reset();
        SetStepsUser("");
    }

    void TakeInbox(Time now)
    {
        std::map<std::string, base::Result<void>> written;
        bool stepsTaken = false;
        {
            const std::lock_guard lock(m_inbox->mutex);
            written.swap(m_inbox->written);
            stepsTaken = std::exchange(m_inbox->stepsTaken, false);
        }
        for (Writing& writing : m_writing) {
            const auto found = written.find(writing.message.id);
            if (found != written.end()) {
                writing.end = found->second;
            }
        }
        if (stepsTaken) {
            LoseSteps(now);
        }
    }

    void TellState()
    {
        const plclink::LinkState state = m_link.State();
        if (m_toldState && *m_toldState == state) {
            return;
        }
        const bool isFirst = !m_toldState;
        if (isFirst) {
            // Also an empty one: it takes away that of a former program.
            if (!m_connection->Publish(TopicOf("listing"), m_order.listing, true)) {
                return;
            }
            ServeViewers();
        }
        if (m_connection->Publish(TopicOf("state"), Text(State(state)), true)) {
            m_toldState = state;
        }
    }

    void TellValues(Time now)
    {
        std::vector<plclink::WatchedOperand> told;
        for (plclink::WatchedOperand& watched : m_link.Watched()) {
            if (m_watchings.count(plc::OperandName(watched.operand)) != 0) {
                told.push_back(std::move(watched));
            }
        }
        for (const auto& entry : m_refused) {
            told.push_back(entry.second);
        }
        const auto message = m_publication.Tick(told, now);
        if (message && !m_connection->Publish(TopicOf("values"), Text(*message))) {
            m_publication.TellAllNext();
        }
    }

    void TellSteps()
    {
        std::optional<StepStatesMessage> steps;
        {
            const std::lock_guard lock(m_inbox->mutex);
            steps.swap(m_inbox->steps);
        }
        if (steps && m_stepsViewer) {
            Answer(*m_stepsViewer, *steps);
        }
    }

    void EndWrites(Time now)
    {
        for (auto writing = m_writing.begin(); writing != m_writing.end();) {
            if (!writing->before) {
                Begin(*writing, now);
            }
            if (writing->end) {
                End(*writing, *writing->end);
                writing = m_writing.erase(writing);
            } else {
                ++writing;
            }
        }
    }

    /// Writes as soon as it is known what was there before.
    void Begin(Writing& writing, Time now)
    {
        const auto newest = m_link.Newest(writing.message.operand);
        if (!newest && now - writing.began < longestLook) {
            return;
        }
        if (!newest) {
            writing.end = base::Failure{"the machine does not let it be read"};
            return;
        }
        if (WriteJudge::IsLate(writing.message, m_publication.RunningTime(now))) {
            writing.end = base::Failure{lateReason};
            return;
        }
        writing.before = newest->value;
        m_link.Write(
            writing.message.operand,
            writing.message.value,
            [inbox = m_inbox, id = writing.message.id](const base::Result<void>& done) {
                const std::lock_guard lock(inbox->mutex);
                inbox->written.emplace(id, done);
            });
    }

    /// A line for it, and an answer.
    void End(const Writing& writing, const base::Result<void>& done)
    {
        const WriteMessage& message = writing.message;
        std::optional<std::uint32_t> after;
        if (done) {
            after = message.value;
        } else if (const auto newest = m_link.Newest(message.operand)) {
            after = newest->value;
        }
        m_log(
            base::TimeOfDay(std::chrono::system_clock::now()) + " write from " +
            writing.viewer.user + ": " + plc::OperandName(message.operand) + ' ' +
            ValueText(writing.before) + " -> " + std::to_string(message.value) +
            (done ? " done" : " refused, it is " + ValueText(after) + ": " + done.Message()));
        Answer(
            writing.viewer,
            WrittenMessage{message.id, writing.before, after, done ? "" : done.Message()});
    }

    void Answer(const Viewer& viewer, const AnswerMessage& message)
    {
        m_connection->Publish(ViewerTopic(m_order.address, "answer", viewer), Text(message));
    }

    plclink::MachineLink& m_link;
    PublishOrder m_order;
    const Log m_log;
    const Log m_end;
    const std::string m_session;
    const std::shared_ptr<Inbox> m_inbox = std::make_shared<Inbox>();

    // Of the connection's thread.
    Publication m_publication;
    WriteJudge m_judge;
    Viewers m_viewers;
    std::set<Viewer> m_refusedViewers; ///< Who has been told so.
    std::optional<Time> m_connected;
    std::atomic<bool> m_isIntroduced{false};       ///< Also looked at in the end, as the next.
    std::atomic<bool> m_hasEnded{false};           ///< Another program is this machine.
    std::optional<plclink::LinkState> m_toldState; ///< On this connection.
    std::map<std::string, std::unique_ptr<Watching>> m_watchings; ///< By operand.
    std::map<std::string, plclink::WatchedOperand> m_refused;     ///< What the machine never tells.
    std::vector<Writing> m_writing;
    std::optional<Viewer> m_stepsViewer;        ///< Whom the steps go to.
    std::optional<plc::StepRange> m_askedSteps; ///< Of the link.
    int m_messagesInTurn = 0;
    std::set<std::string> m_droppedKinds;

    mutable std::mutex m_stepsUserMutex; ///< Guards m_stepsUser.
    std::string m_stepsUser;
    std::optional<Connection> m_connection; ///< Last: its thread uses all of the above.
};

Publisher::Publisher(plclink::MachineLink& link, PublishOrder order, Log log, Log end)
    : m_impl(std::make_unique<Impl>(link, std::move(order), std::move(log), std::move(end)))
{
}

Publisher::~Publisher() = default;

void Publisher::Start()
{
    m_impl->Start();
}

std::string Publisher::StepsUser() const
{
    return m_impl->StepsUser();
}

} // namespace plcremote
