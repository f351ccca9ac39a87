#pragma once

#include <QJsonObject>
#include <map>
#include <string>
#include <vector>

#include "report.h"

// The parts of a report in SARIF 2.1.0.

namespace tool {

/// Returns the tool with all rules.
QJsonObject sarifTool();

/// Makes the results of a run.
class SarifResults {
public:
    QJsonObject add(Told const& finding);

private:
    // How often a fingerprint occurred: findings that differ only in their lines are distinguished by their order.
    std::map<std::string, int> seen_;
};

/// Returns the invocation of a run with these troubles.
QJsonObject sarifInvocation(std::vector<std::string> const& troubles);

}  // namespace tool
