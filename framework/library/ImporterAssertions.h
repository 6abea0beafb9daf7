#pragma once

namespace Qor::Chart::Library {

/// While one is open on a thread, an assertion of the importer library that fails there throws `std::logic_error` instead
/// of ending the program: some packages of the library come with assertions on, and damaged files break them.
class ImporterAssertions {
public:
    ImporterAssertions() noexcept;
    ~ImporterAssertions();
    ImporterAssertions(ImporterAssertions const&) = delete;
    ImporterAssertions& operator=(ImporterAssertions const&) = delete;

    static bool AreThrowing() noexcept;
};

} // namespace Qor::Chart::Library
