#include "listing.h"

#include "debug_file.h"

namespace plchost {

base::Result<std::string> ListingThatSays(const std::string& remark)
{
    plc::Line line;
    line.text = "TITLE =" + remark;
    plc::Block block;
    block.name = "-";
    block.lines = {line};
    return plc::DebugFileOf({{block}, 0});
}

} // namespace plchost
