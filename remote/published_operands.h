#pragma once

#include "machine_link.h"

#include <map>
#include <memory>
#include <string>
#include <vector>

// Which operands of a machine are read because somebody far away wants them. One thread.

namespace plcremote {

class PublishedOperands
{
public:
    /// @param link outlives it.
    explicit PublishedOperands(plclink::MachineLink& link);
    ~PublishedOperands();
    PublishedOperands(const PublishedOperands&) = delete;
    PublishedOperands(PublishedOperands&&) = delete;
    PublishedOperands& operator=(const PublishedOperands&) = delete;
    PublishedOperands& operator=(PublishedOperands&&) = delete;

    /// Has this one read until the next Serve(), if nobody does so already.
    /// @return whether it is new.
    bool Watch(const plc::Operand& operand);

    /// Has these read and nothing else. @return whether any is new.
    bool Serve(const std::vector<plc::Operand>& wanted);

    void LetGo();

    /// What is known of each, and why the machine never tells it.
    std::vector<plclink::WatchedOperand> Known() const;

private:
    class Watching;

    plclink::MachineLink& m_link;
    std::map<std::string, std::unique_ptr<Watching>> m_watchings; ///< By operand.
    std::map<std::string, plclink::WatchedOperand> m_refused;     ///< What the machine never tells.
};

} // namespace plcremote
