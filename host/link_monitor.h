#pragma once

#include "link_view.h"
#include "machine_link.h"

#include <functional>
#include <mutex>
#include <string>
#include <vector>

// Looks after the link: tells each change of its state, and what there is to show of it. No
// windows.

namespace plchost {

class LinkMonitor : private plclink::Client
{
public:
    using Log = std::function<void(const std::string& message)>;

    /// @param link outlives the monitor.
    /// @param log takes a sentence for each change of state. [gui-thread]
    LinkMonitor(plclink::MachineLink& link, Log log);
    ~LinkMonitor() override;
    LinkMonitor(const LinkMonitor&) = delete;
    LinkMonitor(LinkMonitor&&) = delete;
    LinkMonitor& operator=(const LinkMonitor&) = delete;
    LinkMonitor& operator=(LinkMonitor&&) = delete;

    /// To be called some times each second. [gui-thread]
    LinkView Look();

private:
    void OnState(const plclink::LinkState& state) override;
    void Tell(const plclink::LinkState& state);

    plclink::MachineLink& m_link;
    const Log m_log;
    std::mutex m_mutex;                        ///< Guards m_changes, for a look or a change only.
    std::vector<plclink::LinkState> m_changes; ///< Since the last look.
    plclink::LinkState m_told;                 ///< As Look() has said it last.
    plclink::LinkState m_reported;             ///< As the link has said it last.
    PerSecond m_answers;
};

} // namespace plchost
