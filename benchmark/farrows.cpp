#include "farrows.h"

#include <cstdio>

namespace bench {

plcremote::PublishOrder OrderOf(const Broker& broker, const std::string& machine)
{
    return {
        broker.Address(machine, machine),
        broker.Access(machine),
        *plcremote::ParseWriteList(std::string(viewer) + " MW0-MW510", "list"),
        "",
        {},
        "1.0"};
}

void Say(const std::string& sentence)
{
    std::fprintf(stderr, "bench: %s\n", sentence.c_str());
}

} // namespace bench
