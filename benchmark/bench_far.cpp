#include "farrows.h"
#include "measure.h"

// The rows of machines far away: mosquitto is the broker, encrypted, with the configuration that is
// shipped.

int main(int argc, char** argv)
{
    return bench::RunRows(
        {{"far-200", bench::PlantRow},
         {"far-500", bench::LargePlantRow},
         {"far-request", bench::RequestRow},
         {"far-change", bench::ChangeRow},
         {"far-broker-killed", bench::BrokerKilledRow}},
        argc,
        argv);
}
