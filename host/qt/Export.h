#pragma once

/// Marks what the shared library QorChartHostQt shows to its users; everything else stays inside it.
#define QOR_HOSTQT_API __attribute__((visibility("default")))
