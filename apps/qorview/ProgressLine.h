#pragma once

#include "framework/qordebug/highrestimer.h"

#include <string>

namespace Qor::Chart::QorView {

/// One line on the terminal that tells how far a long piece of work has come, and is wiped out when it is done. Nothing
/// shows while the work is short, or when standard error is no terminal.
class ProgressLine {
public:
    explicit ProgressLine(std::string p_work);
    ~ProgressLine();
    ProgressLine(ProgressLine const&) = delete;
    ProgressLine& operator=(ProgressLine const&) = delete;

    /// @param p_part  from 0 to 1
    void Show(double p_part);

private:
    static constexpr unsigned Patience = 300; ///< milliseconds before anything shows

    std::string _work;
    bool _isTerminal;
    int _shown = -1; ///< per cent that the line says now
    qordebug::highrestimer<1> _time;
};

} // namespace Qor::Chart::QorView
