#pragma once

#include "modbus_source.h"

#include <atomic>
#include <condition_variable>
#include <map>
#include <mutex>
#include <set>
#include <string>
#include <vector>

namespace plclink {

/// A device without a wire. Its thread is the source's; tests set it up under the mutex.
class FakeDevice : public ModbusExchange
{
public:
    /// What a test wants of it; to be changed by Change().
    struct Mood
    {
        bool isThere = true;
        bool answers = true;
        bool keepsWrites = true;           ///< What is written is what is read.
        int exception = 0;                 ///< Instead of every reading.
        std::set<std::uint32_t> forbidden; ///< Addresses.
        bool hasMask = true;
        bool isStuck = false; ///< In Open(), until it is interrupted or unstuck.
    };

    template <typename What> void Change(What what)
    {
        {
            const std::lock_guard lock(m_mutex);
            what(m_mood);
        }
        m_changed.notify_all();
    }

    void Set(std::uint32_t address, std::uint16_t value)
    {
        const std::lock_guard lock(m_mutex);
        m_registers[address] = value;
    }

    std::uint16_t Register(std::uint32_t address)
    {
        const std::lock_guard lock(m_mutex);
        return m_registers[address];
    }

    /// "replace 3", "mask 3", in their order.
    std::vector<std::string> Writes()
    {
        const std::lock_guard lock(m_mutex);
        return m_writes;
    }

    int Openings() const { return m_openings; }

    bool WasOpenedTwiceAtOnce() const { return m_openedTwice; }

    base::Result<void> Open() override
    {
        std::unique_lock lock(m_mutex);
        m_openedTwice = m_openedTwice || m_isOpen;
        ++m_openings;
        m_changed.wait(lock, [this] { return !m_mood.isStuck || m_isInterrupted; });
        if (!m_mood.isThere || m_isInterrupted) {
            return base::Failure{"nobody is there"};
        }
        m_isOpen = true;
        return {};
    }

    void Close() override { m_isOpen = false; }

    void Interrupt() override
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isInterrupted = true;
        }
        m_changed.notify_all();
    }

    base::Result<void> Check() override
    {
        const std::lock_guard lock(m_mutex);
        return m_mood.isThere ? base::Result<void>{} : base::Failure{"it hung up"};
    }

    ModbusAnswer Read(ModbusTable, const ModbusSpan& span) override
    {
        const std::lock_guard lock(m_mutex);
        if (!m_mood.answers || !m_mood.isThere || !m_isOpen) {
            return {Kind::Failed, 0, "no answer", {}};
        }
        if (m_mood.exception != 0) {
            return ExceptionAnswer(m_mood.exception);
        }
        ModbusAnswer answer{Kind::Done, 0, {}, {}};
        for (std::uint32_t address = span.begin; address < span.end; ++address) {
            if (m_mood.forbidden.count(address) != 0) {
                return ExceptionAnswer(illegalAddress);
            }
            answer.content.push_back(m_registers[address]);
        }
        return answer;
    }

    ModbusAnswer
    Replace(ModbusTable, const ModbusSpan& span, const std::vector<std::uint16_t>& content) override
    {
        const std::lock_guard lock(m_mutex);
        m_writes.push_back("replace " + std::to_string(span.begin));
        if (!m_mood.answers) {
            return {Kind::Failed, 0, "no answer", {}};
        }
        for (std::size_t i = 0; i < content.size() && m_mood.keepsWrites; ++i) {
            m_registers[span.begin + static_cast<std::uint32_t>(i)] = content[i];
        }
        return {Kind::Done, 0, {}, {}};
    }

    ModbusAnswer Mask(std::uint32_t address, std::uint16_t mask, std::uint16_t content) override
    {
        const std::lock_guard lock(m_mutex);
        m_writes.push_back("mask " + std::to_string(address));
        if (!m_mood.hasMask) {
            return ExceptionAnswer(illegalFunction);
        }
        m_registers[address] = Masked(m_registers[address], mask, content);
        return {Kind::Done, 0, {}, {}};
    }

private:
    using Kind = ModbusAnswer::Kind;

    std::mutex m_mutex; ///< Guards what follows.
    std::condition_variable m_changed;
    Mood m_mood;
    std::map<std::uint32_t, std::uint16_t> m_registers;
    std::vector<std::string> m_writes;
    bool m_isInterrupted = false;
    std::atomic<bool> m_isOpen{false};
    std::atomic<bool> m_openedTwice{false};
    std::atomic<int> m_openings{0};
};

} // namespace plclink
