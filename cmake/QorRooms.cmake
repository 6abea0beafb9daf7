# Rooms, libraries, programs and tests. A room is a folder; its CMakeLists.txt is one call of a function of this file.
include_guard(GLOBAL)

set(QOR_ROOT "${CMAKE_CURRENT_LIST_DIR}/..")
cmake_path(NORMAL_PATH QOR_ROOT)
string(REGEX REPLACE "/$" "" QOR_ROOT "${QOR_ROOT}")

# framework/core -> qor_framework_core
function(qor_target_name p_path p_result)
    string(REPLACE "/" "_" name "qor_${p_path}")
    set(${p_result} "${name}" PARENT_SCOPE)
endfunction()

function(qor_sources p_path p_result)
    file(GLOB sources CONFIGURE_DEPENDS "${QOR_ROOT}/${p_path}/*.cpp" "${QOR_ROOT}/${p_path}/*.h")
    set(${p_result} "${sources}" PARENT_SCOPE)
endfunction()

# Adds those of the folders that have a CMakeLists.txt.
function(qor_add_folders)
    foreach(path IN LISTS ARGN)
        if(EXISTS "${QOR_ROOT}/${path}/CMakeLists.txt")
            add_subdirectory("${QOR_ROOT}/${path}" "${PROJECT_BINARY_DIR}/${path}")
        endif()
    endforeach()
endfunction()

# Adds rooms, lowest first; with QOR_ROOMS set, only those named there.
function(qor_add_rooms)
    foreach(path IN LISTS ARGN)
        if(NOT QOR_ROOMS OR path IN_LIST QOR_ROOMS)
            qor_add_folders(${path})
        endif()
    endforeach()
endfunction()

# qor_room(<path> LIBRARY framework|vis|host|hostqt [DEPENDS room...] [LINK lib...] [LINK_PRIVATE lib...])
#
# Makes an object library of the sources in the folder, part of the given shared library. DEPENDS names rooms below,
# whose include paths and libraries come along. LINK names third-party libraries that the room's headers need,
# LINK_PRIVATE those that only its sources need.
function(qor_room p_path)
    cmake_parse_arguments(arg "" "LIBRARY" "DEPENDS;LINK;LINK_PRIVATE" ${ARGN})
    if(NOT arg_LIBRARY MATCHES "^(framework|vis|host|hostqt)$" OR arg_UNPARSED_ARGUMENTS)
        message(FATAL_ERROR "qor_room(${p_path}): give LIBRARY framework, vis, host or hostqt, and only known keywords")
    endif()
    qor_target_name(${p_path} target)
    qor_sources(${p_path} sources)

    set(compiled ${sources})
    list(FILTER compiled INCLUDE REGEX "\\.cpp$")
    if(compiled)
        set(scope PUBLIC)
        add_library(${target} OBJECT ${sources})
        qor_compile_settings(${target})
        target_link_libraries(${target} PRIVATE ${arg_LINK_PRIVATE})
        set_property(GLOBAL APPEND PROPERTY QOR_OBJECTS_${arg_LIBRARY} ${target})
    else()
        set(scope INTERFACE)
        add_library(${target} INTERFACE)
    endif()
    target_compile_features(${target} ${scope} cxx_std_20)
    target_include_directories(${target} ${scope} "${QOR_ROOT}")
    target_link_libraries(${target} ${scope} ${arg_LINK})
    foreach(room IN LISTS arg_DEPENDS)
        qor_target_name(${room} below)
        if(TARGET ${below})
            target_link_libraries(${target} ${scope} ${below})
        elseif(EXISTS "${QOR_ROOT}/${room}/CMakeLists.txt" AND NOT QOR_ROOMS)
            message(FATAL_ERROR "${p_path} depends on ${room}, which is not below it in the list of floors")
        endif()
    endforeach()

    set_property(GLOBAL APPEND PROPERTY QOR_PATHS_${arg_LIBRARY} ${p_path})
    set_property(GLOBAL APPEND PROPERTY QOR_LINK_${arg_LIBRARY} ${arg_LINK})
    set_property(GLOBAL APPEND PROPERTY QOR_LINK_PRIVATE_${arg_LIBRARY} ${arg_LINK_PRIVATE})
endfunction()

# qor_library(<target> EXPORT_AS <name> ROOMS framework|vis|host|hostqt [LINK library...])
#
# Joins the rooms into one shared library, known as QorChart::<name> here and in the installed package.
function(qor_library p_target)
    cmake_parse_arguments(arg "" "EXPORT_AS;ROOMS" "LINK" ${ARGN})
    get_property(objects GLOBAL PROPERTY QOR_OBJECTS_${arg_ROOMS})
    get_property(link GLOBAL PROPERTY QOR_LINK_${arg_ROOMS})
    get_property(linkPrivate GLOBAL PROPERTY QOR_LINK_PRIVATE_${arg_ROOMS})
    list(REMOVE_DUPLICATES link)
    list(REMOVE_DUPLICATES linkPrivate)

    if(objects)
        list(TRANSFORM objects REPLACE "(.+)" "$<TARGET_OBJECTS:\\1>" OUTPUT_VARIABLE files)
        set(scope PUBLIC)
        add_library(${p_target} SHARED ${files})
        qor_compile_settings(${p_target})
        target_link_libraries(${p_target} PRIVATE ${linkPrivate})
        set_target_properties(${p_target} PROPERTIES
            LINKER_LANGUAGE CXX
            VERSION ${PROJECT_VERSION}
            SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
    else()
        set(scope INTERFACE)
        add_library(${p_target} INTERFACE)
    endif()
    add_library(QorChart::${arg_EXPORT_AS} ALIAS ${p_target})
    set_target_properties(${p_target} PROPERTIES EXPORT_NAME ${arg_EXPORT_AS})
    target_compile_features(${p_target} ${scope} cxx_std_20)
    target_include_directories(${p_target} ${scope}
        "$<BUILD_INTERFACE:${QOR_ROOT}>" "$<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/qorchart>")
    target_link_libraries(${p_target} ${scope} ${arg_LINK} ${link})
endfunction()

# qor_program(<path> NAME <name> [LINK lib...])
#
# One program of all sources in the folder; linked to QorChart::HostQt.
function(qor_program p_path)
    cmake_parse_arguments(arg "" "NAME" "LINK" ${ARGN})
    qor_sources(${p_path} sources)
    if(NOT sources MATCHES "\\.cpp")
        return()
    endif()
    add_executable(${arg_NAME} ${sources})
    qor_program_settings(${arg_NAME})
    target_link_libraries(${arg_NAME} PRIVATE QorChart::HostQt ${arg_LINK})
endfunction()

# qor_examples(<path> <prefix>): one program per source file in the folder, named <prefix>_<file>. QOR_EXAMPLE_DATA is the folder
# examples/data.
function(qor_examples p_path p_prefix)
    file(GLOB sources CONFIGURE_DEPENDS "${QOR_ROOT}/${p_path}/*.cpp")
    foreach(source IN LISTS sources)
        cmake_path(GET source STEM name)
        string(TOLOWER "${p_prefix}_${name}" target)
        add_executable(${target} "${source}")
        qor_program_settings(${target})
        target_link_libraries(${target} PRIVATE QorChart::HostQt)
        target_compile_definitions(${target} PRIVATE QOR_EXAMPLE_DATA="${QOR_ROOT}/examples/data")
    endforeach()
endfunction()

# Precompiles what every test includes, once for all test programs.
function(qor_test_headers)
    if(NOT QOR_PRECOMPILED_HEADERS OR TARGET qor_test_headers)
        return()
    endif()
    set(source "${PROJECT_BINARY_DIR}/tests/headers.cpp")
    if(NOT EXISTS "${source}")
        file(WRITE "${source}" "// Carries the headers that all tests share.\n")
    endif()
    add_library(qor_test_headers OBJECT "${source}")
    qor_compile_settings(qor_test_headers)
    qor_test_settings(qor_test_headers)
    target_link_libraries(qor_test_headers PRIVATE QorChart::Framework)
    target_precompile_headers(qor_test_headers PRIVATE
        <gmock/gmock.h> <gtest/gtest.h> <QString> <QColor> <QImage>
        <algorithm> <cmath> <functional> <map> <memory> <sstream> <string> <vector>)
endfunction()

function(qor_test_settings p_target)
    target_compile_definitions(${p_target} PRIVATE QOR_TEST_DATA="${QOR_ROOT}/tests/data")
    target_link_libraries(${p_target} PRIVATE GTest::gmock GTest::gtest Qt6::Core Qt6::Gui)
endfunction()

# qor_test(<path> [LINK lib...] [PROGRAM target])
#
# One GoogleTest program of all sources in tests/<path>, linked to the shared library that <path> is part of. QOR_TEST_DATA
# is the folder tests/data; with PROGRAM, QOR_TEST_PROGRAM is the path of that program, which is built first.
function(qor_test p_path)
    cmake_parse_arguments(arg "" "PROGRAM" "LINK" ${ARGN})
    qor_sources(tests/${p_path} sources)
    if(NOT sources MATCHES "\\.cpp" OR (arg_PROGRAM AND NOT TARGET ${arg_PROGRAM}))
        return()
    endif()
    qor_target_name(${p_path} room)
    set(target "${room}_test")
    if(p_path MATCHES "^framework/")
        set(library QorChart::Framework)
    elseif(p_path MATCHES "^render/")
        set(library QorChart::Vis)
    elseif(p_path MATCHES "^(host/qt|apps/)")
        set(library QorChart::HostQt)
    else()
        set(library QorChart::Host)
    endif()

    add_executable(${target} ${sources})
    qor_program_settings(${target})
    qor_test_settings(${target})
    target_link_libraries(${target} PRIVATE ${library} GTest::gmock_main ${arg_LINK})
    if(arg_PROGRAM)
        target_compile_definitions(${target} PRIVATE QOR_TEST_PROGRAM="$<TARGET_FILE:${arg_PROGRAM}>")
        add_dependencies(${target} ${arg_PROGRAM})
    endif()
    if(TARGET qor_test_headers AND NOT arg_PROGRAM AND NOT arg_LINK)
        target_precompile_headers(${target} REUSE_FROM qor_test_headers)
    endif()
    gtest_discover_tests(${target}
        TEST_PREFIX "${p_path}/"
        WORKING_DIRECTORY "${CMAKE_CURRENT_BINARY_DIR}"
        DISCOVERY_TIMEOUT 60
        PROPERTIES TIMEOUT 600)
endfunction()

# Adds every folder under the given one that has a CMakeLists.txt; with QOR_ROOMS set, only those of the rooms named there.
function(qor_add_tests p_root)
    include(GoogleTest)
    qor_test_headers()
    file(GLOB_RECURSE lists CONFIGURE_DEPENDS RELATIVE "${QOR_ROOT}/${p_root}" "${QOR_ROOT}/${p_root}/CMakeLists.txt")
    foreach(list IN LISTS lists)
        cmake_path(GET list PARENT_PATH path)
        if(path AND (NOT QOR_ROOMS OR path IN_LIST QOR_ROOMS))
            qor_add_folders(${p_root}/${path})
        endif()
    endforeach()
endfunction()
