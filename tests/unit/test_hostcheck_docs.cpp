#include "projectfile.h"
#include "report.h"

#include <gmock/gmock.h>

#include <fstream>
#include <string>
#include <vector>

TEST(HostcheckDocs, HaveARowForEachFindingInItsOrder)
{
    std::vector<std::string> findings;
    for (int i = 0; i < hostcheck::findingCount; ++i) {
        findings.emplace_back(hostcheck::NameOf(static_cast<hostcheck::Finding>(i)));
    }

    std::ifstream in(ProjectFile("docs/hostcheck.md"));
    std::vector<std::string> rows;
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("| `", 0) == 0) {
            rows.push_back(line.substr(3, line.find('`', 3) - 3));
        }
    }
    EXPECT_EQ(rows, findings);
}
