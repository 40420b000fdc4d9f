#include "sample_machines.h"

#include "bottling/bottling.h"
#include "crossing/crossing.h"
#include "instructions/test_bench.h"
#include "lift/lift.h"
#include "mixer/mixer.h"

#include <algorithm>

namespace samples {

namespace {

constexpr double passengerSeconds = 10;

template <typename T> std::unique_ptr<plc::Process> Make()
{
    return std::make_unique<T>();
}

std::unique_ptr<plc::Process> MakeLift()
{
    return std::make_unique<Lift>(passengerSeconds);
}

} // namespace

const std::vector<SampleMachine>& SampleMachines()
{
    static const std::vector<SampleMachine> machines{
        {"bottling", &Make<BottlingLine>, "E0.0", ""},
        {"crossing", &Make<Crossing>, "", ""},
        {"instructions", &Make<TestBench>, "", ""},
        {"lift", &MakeLift, "", ""},
        {"mixer", &Make<Mixer>, "E0.0", "E0.5"},
    };
    return machines;
}

const SampleMachine* FindSampleMachine(std::string_view name)
{
    const auto& machines = SampleMachines();
    const auto found =
        std::find_if(machines.begin(), machines.end(), [name](const SampleMachine& machine) {
            return machine.name == name;
        });
    return found == machines.end() ? nullptr : &*found;
}

} // namespace samples
