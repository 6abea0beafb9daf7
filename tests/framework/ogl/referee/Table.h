#pragma once

#include "tests/framework/ogl/referee/Program.h"

#include <string>
#include <vector>

namespace Qor::Chart::Ogl::Referee {

/// One state or one primitive kind and what it does to a small scene.
struct TableRow {
    std::string label;
    Program program;
    double agreement = 0.99; ///< share of the drawn pixels that must agree
};

/// Every primitive kind, immediate and buffered, every state, every group of the attribute stack and every built-in shape.
std::vector<TableRow> StateTable();

} // namespace Qor::Chart::Ogl::Referee
