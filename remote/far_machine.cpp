#include "far_machine.h"

#include "random_id.h"

#include <utility>

namespace plcremote {

namespace {

using plclink::LinkState;
using plclink::LinkStatus;
constexpr auto never = plclink::Clock::time_point::max();

/// Stands in the topics of a viewer whom the broker does not ask who he is.
constexpr const char* nobody = "anonymous";

/// Those that can be read.
std::vector<plc::Operand> OperandsOf(const ValuesMessage& message)
{
    std::vector<plc::Operand> operands;
    operands.reserve(message.values.size());
    for (const RemoteValue& value : message.values) {
        if (value.value) {
            operands.push_back(value.operand);
        }
    }
    return operands;
}

} // namespace

FarMachine::FarMachine(plclink::MqttAddress address, plclink::MqttAccess access, Log log)
    : m_address(std::move(address)),
      m_viewer{m_address.user.empty() ? nobody : m_address.user, RandomId()}, m_log(std::move(log)),
      m_list(std::make_shared<const plclink::WatchList>())
{
    m_connection.emplace(ConnectionOrder{
        m_address,
        std::move(access),
        {MachineTopic(m_address, "state"),
         MachineTopic(m_address, "listing"),
         MachineTopic(m_address, "values"),
         ViewerTopicOf("answer")}});
}

FarMachine::~FarMachine()
{
    // The machine need not wait for the leases to end.
    if (!m_list->empty()) {
        m_connection->Publish(ViewerTopicOf("watch"), Text(WatchMessage{}));
    }
    if (m_steps) {
        m_connection->Publish(ViewerTopicOf("steps"), Text(StepsMessage{}));
    }
    m_connection.reset();
    m_writes.EndAll("the link has ended");
}

std::string FarMachine::ViewerTopicOf(std::string_view kind) const
{
    return ViewerTopic(m_address, kind, m_viewer);
}

void FarMachine::Start(plclink::SourceEvents& events)
{
    m_events = &events;
    m_connection->Start(*this);
}

void FarMachine::Watch(std::shared_ptr<const plclink::WatchList> list)
{
    const std::lock_guard lock(m_mutex);
    m_wantedList = std::move(list);
}

void FarMachine::WatchSteps(std::optional<plc::StepRange> range)
{
    const std::lock_guard lock(m_mutex);
    m_wantedSteps = range;
    m_hasWantedSteps = true;
}

void FarMachine::Write(const plc::Operand& operand, std::uint32_t value, plclink::WriteDone done)
{
    const Time now = plclink::Clock::now();
    std::string lost;
    WriteMessage message{{}, RandomId(), operand, value & HighestValue(operand.width)};
    {
        const std::lock_guard lock(m_mutex);
        lost = m_unwritable;
        message.session = m_run.session;
        message.running =
            m_run.running + std::chrono::duration_cast<milliseconds>(now - m_run.came);
    }
    m_writes.Add(message, std::move(done), now);
    if (!lost.empty()) {
        m_writes.Withdraw(message.id, lost);
    } else if (!m_connection->Publish(ViewerTopicOf("write"), Text(message))) {
        m_writes.Withdraw(message.id, "nothing can be sent to the broker at the moment");
    }
}

std::string FarMachine::Listing() const
{
    const std::lock_guard lock(m_mutex);
    return m_listing;
}

bool FarMachine::IsIntroduced() const
{
    const std::lock_guard lock(m_mutex);
    return m_hasListing && (!*m_hasListing || !m_listing.empty()) && (m_told || m_isGone);
}

std::vector<plc::Operand> FarMachine::Told() const
{
    const std::lock_guard lock(m_mutex);
    return m_told.value_or(std::vector<plc::Operand>());
}

void FarMachine::OnConnected()
{
    const Time now = plclink::Clock::now();
    m_values.Restart();
    m_link.broken.reset();
    m_link.connected = now;
    m_link.refusal.clear();
    m_watchDue = m_list->empty() ? never : now;
    m_stepsDue = m_steps ? now : never;
    OnTurn();
}

void FarMachine::OnDisconnected(const std::string& reason, bool isRefused)
{
    m_link.broken = {isRefused ? LinkStatus::Refused : LinkStatus::Lost, reason};
    JudgeLink(plclink::Clock::now());
    m_writes.EndAll(reason);
}

void FarMachine::OnTurn()
{
    const Time now = plclink::Clock::now();
    TakeWishes(now);
    if (!m_link.broken) {
        Ask(now);
    }
    m_writes.Expire(now);
    JudgeLink(now);
    OfferSteps();
    m_events->OnReadings(*m_list, {});
}

void FarMachine::TakeWishes(Time now)
{
    const std::lock_guard lock(m_mutex);
    if (m_wantedList) {
        m_list = std::exchange(m_wantedList, nullptr);
        m_watchDue = now;
    }
    if (std::exchange(m_hasWantedSteps, false)) {
        m_steps = m_wantedSteps;
        m_stepsDue = now;
        m_open.reset();
    }
}

void FarMachine::Ask(Time now)
{
    if (now >= m_watchDue &&
        m_connection->Publish(ViewerTopicOf("watch"), Text(WatchMessage{*m_list}))) {
        m_watchDue = m_list->empty() ? never : now + renewal;
    }
    if (now >= m_stepsDue &&
        m_connection->Publish(ViewerTopicOf("steps"), Text(StepsMessage{m_steps}))) {
        m_stepsDue = m_steps ? now + renewal : never;
    }
}

void FarMachine::OnMessage(std::string_view topic, std::string_view payload, bool isRetained)
{
    const auto parsed = ParseTopic(m_address, topic);
    const std::string kind = parsed ? parsed->kind : "";
    const auto taken = parsed ? TakeMessage(*parsed, payload, isRetained)
                              : base::Failure{"nobody has asked for its topic"};
    if (taken) {
        return;
    }
    ++m_dropped;
    if (m_toldKinds.insert(kind).second) {
        m_log(
            "a message \"" + kind + "\" is dropped: " + taken.Message() +
            " (more of them are counted alone)");
    }
}

base::Result<void>
FarMachine::TakeMessage(const Topic& topic, std::string_view payload, bool isRetained)
{
    if (topic.machine == m_address.machine) {
        if (topic.kind == "state") {
            return TakeState(payload);
        }
        if (topic.kind == "listing") {
            return TakeListing(payload);
        }
        if (isRetained) {
            return base::Failure{"the broker has kept it, nobody knows for how long"};
        }
        if (topic.kind == "values") {
            return TakeValues(payload);
        }
        if (topic.kind == "answer" && topic.viewer && *topic.viewer == m_viewer) {
            return TakeAnswer(payload);
        }
    }
    return base::Failure{"nobody has asked for its topic"};
}

base::Result<void> FarMachine::TakeState(std::string_view payload)
{
    auto state = ReadState(payload);
    if (!state) {
        return base::Failure{state.Message()};
    }
    m_turn = state->turn.count();
    {
        const std::lock_guard lock(m_mutex);
        m_hasListing = state->hasListing;
        m_isGone = state->link.status == LinkStatus::Lost;
    }
    m_link.state = *std::move(state);
    JudgeLink(plclink::Clock::now());
    return {};
}

base::Result<void> FarMachine::TakeListing(std::string_view payload)
{
    if (payload.size() > longestListing) {
        return base::Failure{"it is larger than a listing may be"};
    }
    const std::lock_guard lock(m_mutex);
    m_listing = payload;
    return {};
}

base::Result<void> FarMachine::TakeValues(std::string_view payload)
{
    const Time came = plclink::Clock::now();
    const auto message = ReadValues(payload);
    if (!message) {
        return base::Failure{message.Message()};
    }
    if (!m_values.Take(*message, came)) {
        return base::Failure{"it is older than others, or another program's that says that it is "
                             "this machine"};
    }
    m_lost = m_values.LostCount();
    {
        const std::lock_guard lock(m_mutex);
        m_run = {message->session, message->running, came};
        if (message->isWhole) {
            m_told = OperandsOf(*message);
        }
    }
    TakeWishes(came);
    JudgeLink(came);
    m_events->OnReadings(*m_list, m_values.Readings(*m_list));
    for (const auto& [operand, reason] : m_values.NewRefusals(*m_list)) {
        m_events->OnUnreadable(operand, reason);
    }
    return {};
}

base::Result<void> FarMachine::TakeAnswer(std::string_view payload)
{
    auto answer = ReadAnswer(payload);
    if (!answer) {
        return base::Failure{answer.Message()};
    }
    if (const auto* const written = std::get_if<WrittenMessage>(&*answer)) {
        m_writes.Answer(*written);
    } else if (const auto* const refusal = std::get_if<RefusalMessage>(&*answer)) {
        TakeRefusal(*refusal);
    } else {
        m_open = std::get<StepStatesMessage>(*std::move(answer));
        OfferSteps();
    }
    return {};
}

void FarMachine::TakeRefusal(const RefusalMessage& refusal)
{
    if (refusal.of == RefusalMessage::Of::Watch) {
        m_link.refusal = refusal.reason;
        JudgeLink(plclink::Clock::now());
        return;
    }
    // Who has been told that another viewer has them does not take them back by renewing a lease.
    m_stepsDue = refusal.reason.empty() && m_steps ? plclink::Clock::now() : never;
    if (refusal.reason != std::exchange(m_stepsRefusal, refusal.reason) &&
        !refusal.reason.empty()) {
        m_log("the machine does not tell its program states: " + refusal.reason);
    }
}

void FarMachine::OfferSteps()
{
    if (m_open && m_events->OnSteps(m_open->range, m_open->states)) {
        m_open.reset();
    }
}

void FarMachine::JudgeLink(Time now)
{
    m_link.heard = m_values.Heard();
    m_link.late = m_values.Late();
    m_link.session = m_values.Session();
    const auto judged = Judge(m_link, now);
    if (!judged) {
        return;
    }
    {
        const std::lock_guard lock(m_mutex);
        if (m_link.broken || judged->status == LinkStatus::Lost) {
            m_unwritable = judged->reason;
        } else {
            m_unwritable.clear();
        }
    }
    if (!(*judged == m_state)) {
        m_state = *judged;
        m_events->OnState(m_state);
    }
}

} // namespace plcremote
