#include "modbus_connection.h"

#include "modbus_pdu.h"
#include "modbus_socket.h"

#include <array>
#include <cerrno>
#include <fcntl.h>
#include <modbus/modbus.h>
#include <mutex>
#include <poll.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace plclink {

namespace {

using Kind = ModbusAnswer::Kind;
using std::chrono::milliseconds;

ModbusAnswer Failed(std::string reason)
{
    return {Kind::Failed, 0, std::move(reason), {}};
}

/// Why the library has received nothing that could be looked at.
ModbusAnswer NoAnswer(int error, milliseconds timeout)
{
    switch (error) {
    case ETIMEDOUT:
        return Failed("no answer within " + std::to_string(timeout.count()) + " ms");
    case ECONNRESET:
        return Failed("the device has closed the connection");
    case EMBBADCRC:
        return Failed("the checksum of an answer is wrong");
    case EMBBADDATA:
        return Failed("an answer is too long");
    default:
        return Failed("no answer: " + std::generic_category().message(error));
    }
}

/// What both kinds of connections share. Its functions never wait longer for the device than the
/// map says.
class Connection : public ModbusExchange
{
public:
    Connection(const ModbusDevice& device, int unit) : m_device(device), m_unit(unit) {}

    ~Connection() override { Release(); }

    Connection(const Connection&) = delete;
    Connection(Connection&&) = delete;
    Connection& operator=(const Connection&) = delete;
    Connection& operator=(Connection&&) = delete;

    void Close() override { Release(); }

    ModbusAnswer Read(ModbusTable table, const ModbusSpan& span) override
    {
        return AskAlone(ReadRequest(table, span));
    }

    ModbusAnswer Replace(
        ModbusTable table,
        const ModbusSpan& span,
        const std::vector<std::uint16_t>& content) override
    {
        return AskAlone(ReplaceRequest(table, span, content));
    }

    ModbusAnswer Mask(std::uint32_t address, std::uint16_t mask, std::uint16_t content) override
    {
        return AskAlone(MaskRequest(address, mask, content));
    }

protected:
    /// @return whether the request is on its way; if not, with the reason in errno.
    virtual bool Send(modbus_t* context, const ModbusPdu& request) = 0;
    /// @param frame all that carries an answer.
    /// @return the answer; empty when the frame does not belong to the last request.
    virtual ModbusPdu Unwrapped(const std::vector<std::uint8_t>& frame) const = 0;

    /// Sends a request and takes what comes for its answer, whatever follows.
    ModbusAnswer Ask(const ModbusPdu& request);
    /// Takes a context, of which only the way to the device is set.
    base::Result<void> Adopt(modbus_t* context);

    int File() const { return m_context ? modbus_get_socket(m_context.get()) : -1; }

    std::uint8_t Unit() const { return static_cast<std::uint8_t>(m_unit); }

    milliseconds Timeout() const { return m_device.timeout; }

    const StopSignal& Stop() const { return m_stop; }

    void RaiseStop() { m_stop.Raise(); }

    /// Guards the context against being closed while another thread uses its file.
    std::mutex& ContextMutex() { return m_mutex; }

private:
    struct Free
    {
        void operator()(modbus_t* context) const
        {
            modbus_close(context);
            modbus_free(context);
        }
    };

    ModbusAnswer AskAlone(const ModbusPdu& request);
    void Release();

    const ModbusDevice m_device;
    const int m_unit;
    StopSignal m_stop;
    Clock::time_point m_lastRequest{};
    std::mutex m_mutex; ///< Guards the next.
    std::unique_ptr<modbus_t, Free> m_context;
};

void Connection::Release()
{
    const std::lock_guard lock(m_mutex);
    m_context.reset();
}

base::Result<void> Connection::Adopt(modbus_t* context)
{
    if (context == nullptr) {
        return base::Failure{"not connected: " + std::generic_category().message(errno)};
    }
    const std::lock_guard lock(m_mutex);
    m_context.reset(context);
    constexpr long long microseconds = 1000;
    constexpr long long second = 1000;
    const long long timeout = m_device.timeout.count();
    modbus_set_slave(context, m_unit);
    modbus_set_response_timeout(
        context,
        static_cast<std::uint32_t>(timeout / second),
        static_cast<std::uint32_t>(timeout % second * microseconds));
    // None between two bytes: an answer has to be there as a whole within the timeout.
    modbus_set_byte_timeout(context, 0, 0);
    return {};
}

ModbusAnswer Connection::Ask(const ModbusPdu& request)
{
    if (!m_context) {
        return Failed("not connected");
    }
    const auto rest = m_lastRequest + m_device.apart - Clock::now();
    if (rest > Clock::duration::zero()) {
        m_stop.Wait(-1, 0, std::chrono::ceil<milliseconds>(rest));
    }
    if (m_stop.IsRaised()) {
        return Failed("the link has ended");
    }
    std::vector<std::uint8_t> frame(MODBUS_MAX_ADU_LENGTH);
    const int size = Send(m_context.get(), request)
                         ? modbus_receive_confirmation(m_context.get(), frame.data())
                         : -1;
    const int error = errno;
    m_lastRequest = Clock::now();
    if (size < 0) {
        return NoAnswer(error, m_device.timeout);
    }
    frame.resize(static_cast<std::size_t>(size));
    return AnswerTo(request, Unwrapped(frame));
}

/// What the device sends besides its answer makes the answer worth nothing.
ModbusAnswer Connection::AskAlone(const ModbusPdu& request)
{
    if (auto usable = Check(); !usable) {
        return Failed(usable.Message());
    }
    ModbusAnswer answer = Ask(request);
    if (auto usable = Check(); !usable && answer.kind != Kind::Failed) {
        return Failed(usable.Message());
    }
    return answer;
}

class TcpConnection : public Connection
{
public:
    TcpConnection(ModbusTcp address, const ModbusDevice& device)
        : Connection(device, address.unit), m_address(std::move(address))
    {
    }

    base::Result<void> Open() override
    {
        Close();
        const auto file = ConnectTcp(m_address.host, m_address.port, Timeout(), Stop());
        if (!file) {
            return base::Failure{file.Message()};
        }
        modbus_t* const context = modbus_new_tcp(nullptr, 0);
        if (context != nullptr) {
            modbus_set_socket(context, *file);
        } else {
            ::close(*file);
        }
        return Adopt(context);
    }

    void Interrupt() override
    {
        RaiseStop();
        const std::lock_guard lock(ContextMutex());
        if (File() >= 0) {
            ::shutdown(File(), SHUT_RDWR);
        }
    }

    base::Result<void> Check() override
    {
        char next = 0;
        const auto size = ::recv(File(), &next, sizeof next, MSG_PEEK | MSG_DONTWAIT);
        if (size == 0) {
            return base::Failure{"the device has closed the connection"};
        }
        if (size > 0) {
            return base::Failure{"the device sends more than it was asked for"};
        }
        if (errno != EAGAIN && errno != EWOULDBLOCK) {
            return base::Failure{
                "the connection is broken: " + std::generic_category().message(errno)};
        }
        return {};
    }

protected:
    bool Send(modbus_t*, const ModbusPdu& request) override
    {
        const std::vector<std::uint8_t> frame = TcpFrame(++m_transaction, Unit(), request);
        const auto sent = ::send(File(), frame.data(), frame.size(), MSG_NOSIGNAL);
        return sent == static_cast<ssize_t>(frame.size());
    }

    ModbusPdu Unwrapped(const std::vector<std::uint8_t>& frame) const override
    {
        return InTcpFrame(m_transaction, Unit(), frame);
    }

private:
    const ModbusTcp m_address;
    std::uint16_t m_transaction = 0;
};

class RtuConnection : public Connection
{
public:
    RtuConnection(ModbusRtu address, const ModbusMap& map)
        : Connection(map.device, address.unit), m_address(std::move(address)),
          m_probedTable(map.ranges.front().table), m_probed(map.ranges.front().start)
    {
    }

    base::Result<void> Open() override
    {
        Close();
        if (auto isLine = CheckDevice(); !isLine) {
            return isLine;
        }
        constexpr int dataBits = 8;
        modbus_t* const context = modbus_new_rtu(
            m_address.device.c_str(),
            m_address.baud,
            m_address.parity,
            dataBits,
            m_address.stopBits);
        if (auto adopted = Adopt(context); !adopted) {
            return adopted;
        }
        if (modbus_connect(context) != 0) {
            return base::Failure{
                m_address.device + " is not opened: " + std::generic_category().message(errno)};
        }
        return Settle();
    }

    void Interrupt() override { RaiseStop(); }

    base::Result<void> Check() override
    {
        int count = 0;
        if (::ioctl(File(), FIONREAD, &count) != 0) {
            return base::Failure{"the line is broken: " + std::generic_category().message(errno)};
        }
        if (count > 0) {
            return base::Failure{"the device sends more than it was asked for"};
        }
        return {};
    }

protected:
    bool Send(modbus_t* context, const ModbusPdu& request) override
    {
        std::vector<std::uint8_t> bytes{Unit()};
        bytes.insert(bytes.end(), request.begin(), request.end());
        return modbus_send_raw_request(context, bytes.data(), static_cast<int>(bytes.size())) > 0;
    }

    ModbusPdu Unwrapped(const std::vector<std::uint8_t>& frame) const override
    {
        constexpr std::ptrdiff_t checksum = 2; // the library has compared it
        const bool isMine = frame.size() > 1 + checksum && frame.front() == Unit();
        return isMine ? ModbusPdu(frame.begin() + 1, frame.end() - checksum) : ModbusPdu{};
    }

private:
    /// Whatever is no serial line would take the requests as its content.
    base::Result<void> CheckDevice() const
    {
        const int file =
            ::open(m_address.device.c_str(), O_RDONLY | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
        if (file < 0) {
            return base::Failure{
                m_address.device + " is not opened: " + std::generic_category().message(errno)};
        }
        const bool isLine = ::isatty(file) == 1;
        ::close(file);
        return isLine ? base::Result<void>{}
                      : base::Failure{m_address.device + " is no serial line"};
    }

    /// Answers on a serial line do not say which request they belong to. So the first one, which
    /// may belong to a request of a connection before this one, counts as none, and then the line
    /// has to be silent.
    base::Result<void> Settle()
    {
        ::tcflush(File(), TCIOFLUSH);
        const ModbusAnswer answer = Ask(ReadRequest(m_probedTable, {m_probed, m_probed + 1U}));
        if (answer.kind == Kind::Failed) {
            return base::Failure{answer.reason};
        }
        constexpr int patience = 10;
        const auto end = Clock::now() + patience * Timeout();
        while (Clock::now() < end) {
            switch (Stop().Wait(File(), POLLIN, Timeout())) {
            case StopSignal::Woken::TimeOut:
                return {};
            case StopSignal::Woken::Stopped:
                return base::Failure{"the link has ended"};
            case StopSignal::Woken::Ready:
                break;
            }
            std::array<char, MODBUS_MAX_ADU_LENGTH> stale{};
            if (::read(File(), stale.data(), stale.size()) <= 0) {
                return base::Failure{"the line is broken"};
            }
        }
        return base::Failure{"the line is never silent"};
    }

    const ModbusRtu m_address;
    const ModbusTable m_probedTable;
    const std::uint32_t m_probed;
};

} // namespace

std::unique_ptr<ModbusExchange>
MakeModbusConnection(const ModbusAddress& address, const ModbusMap& map)
{
    if (const auto* const tcp = std::get_if<ModbusTcp>(&address)) {
        return std::make_unique<TcpConnection>(*tcp, map.device);
    }
    return std::make_unique<RtuConnection>(std::get<ModbusRtu>(address), map);
}

} // namespace plclink
