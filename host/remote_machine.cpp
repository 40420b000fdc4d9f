#include "remote_machine.h"

#include "debug_file.h"
#include "listing.h"

#include <utility>

namespace plchost {

RemoteMachine::RemoteMachine(
    plcremote::MqttSource& source,
    std::unique_ptr<plcremote::MqttSource> machine,
    std::string name,
    ConfigFiles files,
    AnswerSink& answers,
    std::function<void()> tick,
    MachineLog log)
    : DeviceMachine(
          std::move(machine),
          std::move(name),
          &HostTexts::isFarAway,
          answers,
          std::move(tick),
          std::move(log)),
      m_source(source), m_files(std::move(files))
{
}

void RemoteMachine::Start()
{
    m_start = plclink::Clock::now();
    DeviceMachine::Start();
}

bool RemoteMachine::IsReady() const
{
    return m_source.IsIntroduced() || plclink::Clock::now() - m_start >= introductionTime;
}

base::Result<void> RemoteMachine::PrepareDebugger(const std::string& language)
{
    const std::string told = m_source.Listing();
    const auto usable = told.empty() ? base::Result<void>() : plc::CheckDebugBytes(told);
    const auto listing = told.empty() || !usable
                             ? ListingThatSays(TextsIn(language).noListingHasCome)
                             : base::Result<std::string>(told);
    if (!listing) {
        return base::Failure{listing.Message()};
    }
    if (auto written = ReplaceConfigFile(m_files.debugFile, *listing); !written) {
        return written;
    }
    std::vector<std::string> operands;
    for (const plc::Operand& operand : m_source.Told()) {
        operands.push_back(plc::OperandName(operand));
    }
    if (auto seeded = SeedWatchListOf(m_files, operands); !seeded) {
        return seeded;
    }
    if (!usable) {
        return base::Failure{"the machine's listing is not shown: " + usable.Message()};
    }
    return {};
}

} // namespace plchost
