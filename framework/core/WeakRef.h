#pragma once

#include "framework/core/Reference.h" // IWYU pragma: export
