#pragma once

/// Marks what the shared library QorChartHost shows to its users; everything else stays inside it.
#define QOR_HOST_API __attribute__((visibility("default")))
