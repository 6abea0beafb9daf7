#pragma once

#include <assimp/DefaultIOSystem.h>

namespace Qor::Chart::Library {

/// The files that the importer library reads, with a limit to its reading: some damaged files make it read on without end.
class GuardedFiles : public Assimp::DefaultIOSystem {
public:
    Assimp::IOStream* Open(char const* p_file, char const* p_mode) override;
};

} // namespace Qor::Chart::Library
