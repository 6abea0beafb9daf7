#pragma once

#include "framework/core/ModificationWatcher.h" // IWYU pragma: export
