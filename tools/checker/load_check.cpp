#include "checks.h"
#include "exports.h"

#include <algorithm>

namespace plccheck {

namespace {

/// That the library loads has been seen when this runs.
void OffersFour(TrialHost& host)
{
    const auto exported = ExportsOf(host.Library());
    if (!exported) {
        host.Require(false, exported.Message());
        return;
    }
    static const std::vector<std::string> boundary{
        "ExportAnswerProgState",
        "ExportAnswerReadVar",
        "ExportCreatePlcDebugger",
        "ExportDestroyPlcDebugger"};
    for (const std::string& name : *exported) {
        host.Require(
            std::find(boundary.begin(), boundary.end(), name) != boundary.end(),
            "it exports \"" + name + "\" as well");
    }
}

} // namespace

const Check& LoadCheck()
{
    static const Check check{"loads", "it loads and has the four exports alone", OffersFour};
    return check;
}

} // namespace plccheck
