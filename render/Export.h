#pragma once

/// Marks what the shared library QorChartVis shows to its users; everything else stays inside it.
#define QOR_VIS_API __attribute__((visibility("default")))
