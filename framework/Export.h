#pragma once

/// Marks what the shared library QorChartFramework shows to its users; everything else stays inside it.
#define QOR_FRAMEWORK_API __attribute__((visibility("default")))
