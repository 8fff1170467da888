# How every target of the project is compiled, and the functions that declare them.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
# What an adapter's folder finds, the library at the top links.
set(CMAKE_FIND_PACKAGE_TARGETS_GLOBAL ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
find_package(Threads REQUIRED)

find_program(QXSVG_CCACHE ccache)
if(QXSVG_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  # The slopiness lets the cache serve translation units that use a precompiled header.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
      ${QXSVG_CCACHE})
endif()

add_library(qxsvg_flags INTERFACE)
target_compile_options(qxsvg_flags INTERFACE -Wall -Wextra -Wpedantic -Werror -Wnon-virtual-dtor
                       -Wcast-align -Wimplicit-fallthrough -Wvla -fno-math-errno -ffp-contract=off)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # The three last ones see faults in inlined std::u16string code of GCC 12 where there are none.
  target_compile_options(qxsvg_flags INTERFACE -fpch-preprocess -Wno-psabi -Wno-stringop-overflow
                         -Wno-array-bounds -Wno-restrict)
endif()
target_include_directories(qxsvg_flags INTERFACE ${PROJECT_SOURCE_DIR})
target_link_libraries(qxsvg_flags INTERFACE Threads::Threads)
if(QXSVG_SANITIZE)
  target_compile_options(qxsvg_flags INTERFACE -fsanitize=${QXSVG_SANITIZE}
                         -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(qxsvg_flags INTERFACE -fsanitize=${QXSVG_SANITIZE})
endif()

# One precompiled header for the standard library, shared by all targets of the library.
add_library(qxsvg_pch OBJECT ${PROJECT_SOURCE_DIR}/cmake/Std.cpp)
target_link_libraries(qxsvg_pch PRIVATE qxsvg_flags)
target_precompile_headers(qxsvg_pch PRIVATE ${PROJECT_SOURCE_DIR}/cmake/Std.h)

function(qxsvg_target_defaults target)
  target_link_libraries(${target} PRIVATE qxsvg_flags)
  target_precompile_headers(${target} REUSE_FROM qxsvg_pch)
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "EXECUTABLE")
    # The precompiled header serves one kind of code only, and the library's is -fPIC.
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE OFF)
    target_compile_options(${target} PRIVATE -fPIC)
  endif()
endfunction()

# qxsvg_folder(runtime) makes the object library qxsvg_runtime of all sources in that folder; a
# folder with no source yet makes nothing.
function(qxsvg_folder folder)
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.cpp)
  file(GLOB headers CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${folder}/*.h)
  if(NOT sources)
    return()
  endif()
  get_filename_component(name ${folder} NAME)
  add_library(qxsvg_${name} OBJECT ${sources} ${headers})
  qxsvg_target_defaults(qxsvg_${name})
  target_compile_definitions(qxsvg_${name} PRIVATE QXSVG_BUILDING)
  if(BUILD_SHARED_LIBS)
    target_compile_definitions(qxsvg_${name} PRIVATE QXSVG_SHARED)
  endif()
  set_property(GLOBAL APPEND PROPERTY QXSVG_FOLDERS qxsvg_${name})
endfunction()

# The library itself: the objects of every folder and adapter. The tests reach inside, so they link
# the same objects from a static archive even when the product is shared.
function(qxsvg_library)
  get_property(folders GLOBAL PROPERTY QXSVG_FOLDERS)
  set(objects)
  foreach(folder IN LISTS folders)
    list(APPEND objects $<TARGET_OBJECTS:${folder}>)
  endforeach()
  add_library(qxsvg ${objects})
  add_library(qxsvg::qxsvg ALIAS qxsvg)
  set_target_properties(qxsvg PROPERTIES LINKER_LANGUAGE CXX VERSION ${PROJECT_VERSION}
                        SOVERSION ${PROJECT_VERSION_MAJOR})
  target_compile_features(qxsvg PUBLIC cxx_std_20)
  target_include_directories(qxsvg INTERFACE
    $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>
    $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}/qxsvg>)
  if(BUILD_SHARED_LIBS)
    target_compile_definitions(qxsvg INTERFACE QXSVG_SHARED)
  endif()
  target_link_libraries(qxsvg PRIVATE Threads::Threads)
  foreach(folder IN LISTS folders)
    get_target_property(outside ${folder} QXSVG_OUTSIDE)
    if(outside)
      target_link_libraries(qxsvg PRIVATE ${outside})
    endif()
  endforeach()
  if(QXSVG_SANITIZE)
    target_link_options(qxsvg PUBLIC -fsanitize=${QXSVG_SANITIZE})
  endif()
endfunction()

# qxsvg_adapter(libxml2 LINK LibXml2::LibXml2) makes one adapter folder and notes what it brings.
# PACKAGES names what a consumer of the static library has to find, PKGCONFIG the same for pkg-config.
function(qxsvg_adapter name)
  cmake_parse_arguments(arg "" "" "LINK;PACKAGES;PKGCONFIG;SOURCES" ${ARGN})
  qxsvg_folder(adapters/${name})
  target_link_libraries(qxsvg_${name} PRIVATE ${arg_LINK})
  set_target_properties(qxsvg_${name} PROPERTIES QXSVG_OUTSIDE "${arg_LINK}")
  string(TOUPPER ${name} upper)
  set_property(GLOBAL APPEND PROPERTY QXSVG_ADAPTER_NAMES ${upper})
  set_property(GLOBAL APPEND PROPERTY QXSVG_PACKAGES ${arg_PACKAGES})
  set_property(GLOBAL APPEND PROPERTY QXSVG_PKGCONFIG ${arg_PKGCONFIG})
  if(TARGET qxsvg_adapters)
    target_compile_definitions(qxsvg_adapters PRIVATE QXSVG_HAS_${upper})
  endif()
endfunction()
