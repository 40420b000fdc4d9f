#include "publisher.h"

#include "publication.h"
#include "published_operands.h"
#include "published_steps.h"
#include "published_writes.h"
#include "random_id.h"
#include "topics.h"
#include "viewers.h"

#include <algorithm>
#include <atomic>
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

constexpr const char* goneReason = "the machine's program has ended or its network is gone";
constexpr const char* endedReason = "the machine's program has ended";

/// What of a list can be told.
std::vector<plc::Operand> FirstOf(const std::vector<plc::Operand>& operands)
{
    const std::size_t count = std::min(operands.size(), mostOperands);
    return {operands.begin(), operands.begin() + static_cast<std::ptrdiff_t>(count)};
}

} // namespace

class Publisher::Impl : private ConnectionEvents
{
public:
    Impl(plclink::MachineLink& link, PublishOrder order, Log log, Log end)
        : m_link(link), m_order(std::move(order)), m_log(std::move(log)), m_end(std::move(end)),
          m_session(RandomId()), m_publication(m_session, Clock::now()),
          m_viewers(FirstOf(m_order.operands)), m_operands(link),
          m_steps(
              link, m_viewers, [this](const auto& viewer, const auto& it) { Answer(viewer, it); }),
          m_writes(
              link,
              WriteJudge(m_order.writeList, m_session),
              m_log,
              [this](const auto& viewer, const auto& it) { Answer(viewer, it); })
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
        m_writes.GiveUp(endedReason);
        m_writes.Close();
    }

    Impl(const Impl&) = delete;
    Impl(Impl&&) = delete;
    Impl& operator=(const Impl&) = delete;
    Impl& operator=(Impl&&) = delete;

    void Start() { m_connection->Start(*this); }

    std::string StepsUser() const { return m_steps.User(); }

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
        LetGo(reason);
    }

    void OnTurn() override
    {
        m_messagesInTurn = 0;
        const Time now = Clock::now();
        m_writes.Turn(m_publication.RunningTime(now), now);
        if (m_hasEnded) {
            return;
        }
        if (m_viewers.Expire(now)) {
            ServeViewers();
        }
        m_steps.Turn(now);
        if (!m_connected) {
            return;
        }
        if (!m_isIntroduced && now - *m_connected < introduction) {
            return;
        }
        m_isIntroduced = true;
        TellState();
        TellValues(now);
        m_steps.Tell();
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
            const std::string reason = "another program publishes " + m_order.address.plant + '/' +
                                       m_order.address.machine + " already";
            LetGo(reason);
            m_end(reason);
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
        m_steps.Serve();
        return {};
    }

    base::Result<void> TakeWrite(const Viewer& viewer, std::string_view payload)
    {
        const auto message = ReadWrite(payload);
        if (!message) {
            return base::Failure{message.Message()};
        }
        const Time now = Clock::now();
        const milliseconds running = m_publication.RunningTime(now);
        if (m_writes.Take(viewer, *message, running, now)) {
            m_operands.Watch(message->operand);
            // Most operands are watched already, and need not wait for the next turn.
            m_writes.Turn(running, now);
        }
        return {};
    }

    /// All that is still to be done for viewers who are no more.
    void LetGo(const std::string& reason)
    {
        m_viewers.Clear();
        m_writes.GiveUp(reason);
        m_steps.LetGo();
        m_operands.LetGo();
    }

    /// Watches what the viewers want, and what everybody is told, and nothing else.
    void ServeViewers()
    {
        std::vector<plc::Operand> wanted = m_viewers.Operands();
        const std::vector<plc::Operand> written = m_writes.Operands();
        wanted.insert(wanted.end(), written.begin(), written.end());
        if (m_operands.Serve(wanted)) {
            m_publication.TellAllNext();
        }
        m_steps.Serve();
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
        const auto message = m_publication.Tick(m_operands.Known(), now);
        if (message && !m_connection->Publish(TopicOf("values"), Text(*message))) {
            m_publication.TellAllNext();
        }
    }

    /// At the end nobody hears it any more.
    void Answer(const Viewer& viewer, const AnswerMessage& message)
    {
        if (!m_connection) {
            return;
        }
        m_connection->Publish(ViewerTopic(m_order.address, "answer", viewer), Text(message));
    }

    plclink::MachineLink& m_link;
    PublishOrder m_order;
    const Log m_log;
    const Log m_end;
    const std::string m_session;

    // Of the connection's thread.
    Publication m_publication;
    Viewers m_viewers;
    PublishedOperands m_operands;
    PublishedSteps m_steps; ///< StepsUser() is of any thread.
    PublishedWrites m_writes;
    std::set<Viewer> m_refusedViewers; ///< Who has been told so.
    std::optional<Time> m_connected;
    std::atomic<bool> m_isIntroduced{false};       ///< Also looked at in the end, as the next.
    std::atomic<bool> m_hasEnded{false};           ///< Another program is this machine.
    std::optional<plclink::LinkState> m_toldState; ///< On this connection.
    int m_messagesInTurn = 0;
    std::set<std::string> m_droppedKinds;

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
