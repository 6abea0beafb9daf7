# cmake --install: libraries, headers under include/qorchart, the CMake package, the pkg-config file, the program.
include(CMakePackageConfigHelpers)

set(qor_package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/QorChartVis")
set(qor_include_dir "${CMAKE_INSTALL_INCLUDEDIR}/qorchart")

foreach(library QorChartFramework QorChartVis QorChartHost QorChartHostQt)
    set_target_properties(${library} PROPERTIES INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${library} EXPORT QorChartVisTargets
        LIBRARY DESTINATION "${CMAKE_INSTALL_LIBDIR}"
        RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endforeach()
install(EXPORT QorChartVisTargets NAMESPACE QorChart:: DESTINATION "${qor_package_dir}")

foreach(folder framework render host)
    install(DIRECTORY "${PROJECT_SOURCE_DIR}/${folder}" DESTINATION "${qor_include_dir}"
        FILES_MATCHING PATTERN "*.h")
endforeach()

configure_package_config_file(
    "${PROJECT_SOURCE_DIR}/cmake/QorChartVisConfig.cmake.in" "${PROJECT_BINARY_DIR}/QorChartVisConfig.cmake"
    INSTALL_DESTINATION "${qor_package_dir}")
write_basic_package_version_file("${PROJECT_BINARY_DIR}/QorChartVisConfigVersion.cmake" COMPATIBILITY SameMinorVersion)
install(FILES
    "${PROJECT_BINARY_DIR}/QorChartVisConfig.cmake" "${PROJECT_BINARY_DIR}/QorChartVisConfigVersion.cmake"
    DESTINATION "${qor_package_dir}")

file(RELATIVE_PATH qor_to_prefix "${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig" "${CMAKE_INSTALL_PREFIX}")
configure_file("${PROJECT_SOURCE_DIR}/cmake/qorchart.pc.in" "${PROJECT_BINARY_DIR}/qorchart.pc" @ONLY)
install(FILES "${PROJECT_BINARY_DIR}/qorchart.pc" DESTINATION "${CMAKE_INSTALL_LIBDIR}/pkgconfig")

if(TARGET qorview)
    file(RELATIVE_PATH qor_from_bin "${CMAKE_INSTALL_FULL_BINDIR}" "${CMAKE_INSTALL_FULL_LIBDIR}")
    set_target_properties(qorview PROPERTIES INSTALL_RPATH "$ORIGIN/${qor_from_bin}")
    install(TARGETS qorview RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
endif()
install(FILES "${PROJECT_SOURCE_DIR}/LICENSE" DESTINATION "${CMAKE_INSTALL_DOCDIR}")
