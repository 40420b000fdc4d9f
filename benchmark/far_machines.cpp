#include "command_line.h"
#include "wordmachine.h"

#include <CLI/CLI.hpp>

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <memory>
#include <string>
#include <thread>
#include <vector>

// Machines that are published on one broker, of each of which all values change ten times a second.

namespace {

constexpr std::chrono::milliseconds turn{100};

/// A broker lets in only so many at a time.
constexpr std::chrono::milliseconds betweenStarts{50};

/// Says once that all of them are published.
class Readiness
{
public:
    explicit Readiness(std::size_t count) : m_missing(count) {}

    void Hear(const std::string& sentence)
    {
        if (sentence.find("published on the broker") == 0) {
            if (--m_missing == 0) {
                std::puts("ready");
                std::fflush(stdout);
            }
        } else {
            std::fprintf(stderr, "bench: %s\n", sentence.c_str());
        }
    }

private:
    std::atomic<std::size_t> m_missing;
};

[[noreturn]] void
Run(std::vector<std::unique_ptr<bench::PublishedMachine>>& machines,
    const std::vector<plc::Operand>& words)
{
    constexpr std::uint32_t highest = 0xFFFF;
    auto next = plclink::Clock::now();
    for (std::uint32_t value = 0;; ++value) {
        for (const auto& machine : machines) {
            for (const plc::Operand& word : words) {
                machine->Words().Set(word.address, value & highest);
            }
            machine->Words().Turn();
        }
        next += turn;
        std::this_thread::sleep_until(next);
    }
}

int Main(int argc, char** argv)
{
    std::uint16_t port = 0;
    std::string folder;
    std::vector<std::string> names;
    std::size_t values = 0;
    CLI::App app{"Publishes machines; ./bench runs it.", "far_machines"};
    app.add_option("PORT", port, "of the broker on this machine")->required();
    app.add_option("FOLDER", folder, "what make-plant has made")->required();
    app.add_option("VALUES", values, "how many each of them tells")->required();
    app.add_option("NAME", names, "of each machine")->required();
    if (const auto ended = base::ReadCommandLine(app, argc, argv)) {
        return *ended;
    }
    Readiness readiness(names.size());
    const auto words = bench::FlagWords(values);
    std::vector<std::unique_ptr<bench::PublishedMachine>> machines;
    for (const std::string& name : names) {
        machines.push_back(std::make_unique<bench::PublishedMachine>(
            plcremote::PublishOrder{
                {true, name, "127.0.0.1", port, "hall1", name},
                {folder + "/ca.crt",
                 std::string(folder).append("/").append(name).append(".password")},
                {},
                "",
                words,
                "1.0"},
            [&readiness](const std::string& sentence) { readiness.Hear(sentence); }));
        std::this_thread::sleep_for(betweenStarts);
    }
    Run(machines, words);
}

} // namespace

int main(int argc, char** argv)
{
    try {
        return Main(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "far_machines: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
