# The installable package: library, headers in their folders, CMake configuration and pkg-config file.
include(CMakePackageConfigHelpers)

install(TARGETS qxsvg EXPORT qxsvg
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR})
foreach(folder IN ITEMS runtime foundation document graphics shapes paint text background hosts)
  install(DIRECTORY ${PROJECT_SOURCE_DIR}/${folder}/
          DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qxsvg/${folder}
          FILES_MATCHING PATTERN "*.h")
endforeach()
install(FILES ${PROJECT_SOURCE_DIR}/qxsvg.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/qxsvg)

# A consumer of the static library has to find what the adapters link; a shared one brings it along.
set(QXSVG_DEPENDENCIES "find_dependency(Threads)\n")
get_property(pkgconfig GLOBAL PROPERTY QXSVG_PKGCONFIG)
if(NOT BUILD_SHARED_LIBS)
  get_property(packages GLOBAL PROPERTY QXSVG_PACKAGES)
  foreach(package IN LISTS packages)
    string(APPEND QXSVG_DEPENDENCIES "find_dependency(${package})\n")
  endforeach()
endif()
list(JOIN pkgconfig " " QXSVG_PKGCONFIG_REQUIRES)
if(BUILD_SHARED_LIBS)
  set(QXSVG_PKGCONFIG_CFLAGS "-DQXSVG_SHARED")
endif()

set(package_dir ${CMAKE_INSTALL_LIBDIR}/cmake/qxsvg)
install(EXPORT qxsvg NAMESPACE qxsvg:: DESTINATION ${package_dir} FILE qxsvgTargets.cmake)
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/qxsvgConfig.cmake.in
  ${CMAKE_BINARY_DIR}/qxsvgConfig.cmake INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file(${CMAKE_BINARY_DIR}/qxsvgConfigVersion.cmake
  COMPATIBILITY SameMinorVersion)
install(FILES ${CMAKE_BINARY_DIR}/qxsvgConfig.cmake ${CMAKE_BINARY_DIR}/qxsvgConfigVersion.cmake
        DESTINATION ${package_dir})

# The prefix is found from the file's own place, so that the tree can be moved.
file(RELATIVE_PATH QXSVG_PC_UP ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" QXSVG_PC_UP "${QXSVG_PC_UP}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/qxsvg.pc.in ${CMAKE_BINARY_DIR}/qxsvg.pc @ONLY)
install(FILES ${CMAKE_BINARY_DIR}/qxsvg.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
