# What every target of this project is compiled and linked with.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_SCAN_FOR_MODULES OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)

if(PROJECT_IS_TOP_LEVEL)
    if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
        set(CMAKE_BUILD_TYPE Release CACHE STRING "Kind of build" FORCE)
    endif()
    foreach(kind RUNTIME LIBRARY ARCHIVE)
        set(CMAKE_${kind}_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/bin")
    endforeach()
endif()

# The build type "Sanitizers": address and undefined behaviour, every finding ends the program.
set(qor_sanitize -fsanitize=address,undefined -fno-sanitize-recover=all)
list(JOIN qor_sanitize " " qor_sanitize_flags)
set(CMAKE_CXX_FLAGS_SANITIZERS "-O1 -g1 -fno-omit-frame-pointer ${qor_sanitize_flags}")
set(CMAKE_EXE_LINKER_FLAGS_SANITIZERS "${qor_sanitize_flags}")
set(CMAKE_SHARED_LINKER_FLAGS_SANITIZERS "${qor_sanitize_flags}")
set(CMAKE_MODULE_LINKER_FLAGS_SANITIZERS "${qor_sanitize_flags}")

if(PROJECT_IS_TOP_LEVEL)
    find_program(QOR_LLD NAMES ld.lld DOC "A faster linker, used when it is there")
    if(QOR_LLD)
        add_link_options(-fuse-ld=lld)
    endif()
endif()

# Warnings, and nothing left undefined in a shared library: a room that calls upwards does not link.
function(qor_compile_settings p_target)
    target_compile_options(${p_target} PRIVATE
        -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wno-sign-conversion -Wnon-virtual-dtor -Woverloaded-virtual
        # What g++ 12 reports falsely about sums of text and std::string once they are inlined.
        "$<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-array-bounds;-Wno-stringop-overflow>"
        $<$<BOOL:${QOR_WARNINGS_AS_ERRORS}>:-Werror>)
    # Calls within a shared library go straight to their function and may be inlined.
    target_compile_options(${p_target} PRIVATE -fno-semantic-interposition)
    target_compile_definitions(${p_target} PRIVATE QT_NO_KEYWORDS)
    target_link_options(${p_target} PRIVATE $<$<NOT:$<CONFIG:Sanitizers>>:-Wl,--no-undefined> -Wl,--as-needed)
endfunction()

# The same for a program.
function(qor_program_settings p_target)
    qor_compile_settings(${p_target})
    if(CMAKE_BUILD_TYPE STREQUAL "Sanitizers")
        target_sources(${p_target} PRIVATE "${QOR_ROOT}/cmake/KeepLibraries.cpp")
        set_source_files_properties("${QOR_ROOT}/cmake/KeepLibraries.cpp" PROPERTIES SKIP_PRECOMPILE_HEADERS ON)
        target_link_options(${p_target} PRIVATE -Wl,--export-dynamic-symbol=dlclose)
    endif()
endfunction()
