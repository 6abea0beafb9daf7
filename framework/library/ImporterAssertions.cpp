#include "framework/library/ImporterAssertions.h"

#include "framework/Export.h"

#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <string>

namespace Qor::Chart::Library {

namespace {

thread_local int open = 0;

} // namespace

ImporterAssertions::ImporterAssertions() noexcept {
    ++open;
}

ImporterAssertions::~ImporterAssertions() {
    --open;
}

bool ImporterAssertions::AreThrowing() noexcept {
    return open > 0;
}

} // namespace Qor::Chart::Library

namespace Assimp {

/// Stands in for the function of this name in the importer library, which calls it when an assertion fails.
QOR_FRAMEWORK_API void aiAssertViolation(char const* p_condition, char const* p_file, int p_line);

void aiAssertViolation(char const* p_condition, char const* p_file, int p_line) {
    if (Qor::Chart::Library::ImporterAssertions::AreThrowing()) {
        throw std::logic_error(std::string("it breaks the rule ") + p_condition);
    }
    std::fprintf(stderr, "assertion failed in %s(%d): %s\n", p_file, p_line, p_condition);
    std::abort();
}

} // namespace Assimp
