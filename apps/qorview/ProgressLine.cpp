#include "apps/qorview/ProgressLine.h"

#include <algorithm>
#include <iostream>
#include <utility>

#include <unistd.h>

namespace Qor::Chart::QorView {

ProgressLine::ProgressLine(std::string p_work) : _work(std::move(p_work)), _isTerminal(isatty(STDERR_FILENO) == 1) {}

ProgressLine::~ProgressLine() {
    if (_shown >= 0)
        std::cerr << "\r\033[K" << std::flush;
}

void ProgressLine::Show(double p_part) {
    int const percent = static_cast<int>(std::clamp(p_part, 0.0, 1.0) * 100);
    if (!_isTerminal || percent == _shown || _time.elapsed() < Patience)
        return;
    _shown = percent;
    std::cerr << '\r' << _work << "  " << percent << " %\033[K" << std::flush;
}

} // namespace Qor::Chart::QorView
