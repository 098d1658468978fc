# nlohmann-json, header-only, for reading the browsers' JSON files: the target lumenor_json.
#
# Where its CMake package suits the target compiler (MSVC with vcpkg or an install prefix
# in CMAKE_PREFIX_PATH, a native build), find_package() finds it. When cross-compiling on
# Debian, the package (nlohmann-json3-dev) sits in /usr/include beside Linux's own headers,
# which the MinGW compiler must never see: the build gets an include folder of its own
# that holds only a link to nlohmann/.

add_library(lumenor_json INTERFACE)
find_package(nlohmann_json 3.2 CONFIG QUIET)
if(nlohmann_json_FOUND)
  target_link_libraries(lumenor_json INTERFACE nlohmann_json::nlohmann_json)
  return()
endif()

find_path(LUMENOR_JSON_INCLUDE_DIR nlohmann/json.hpp
  PATHS /usr/include /usr/local/include NO_DEFAULT_PATH NO_CMAKE_FIND_ROOT_PATH
  DOC "Folder that holds nlohmann/json.hpp")
if(NOT LUMENOR_JSON_INCLUDE_DIR)
  message(FATAL_ERROR "nlohmann-json not found: on Debian install nlohmann-json3-dev (scripts/install-deps.sh); "
                      "elsewhere point CMAKE_PREFIX_PATH at an installed nlohmann_json package, or set "
                      "LUMENOR_JSON_INCLUDE_DIR to the folder that holds nlohmann/json.hpp.")
endif()
if(CMAKE_CROSSCOMPILING)
  set(lumenor_json_include ${CMAKE_BINARY_DIR}/third_party/include)
  file(MAKE_DIRECTORY ${lumenor_json_include})
  file(CREATE_LINK ${LUMENOR_JSON_INCLUDE_DIR}/nlohmann ${lumenor_json_include}/nlohmann SYMBOLIC)
  target_include_directories(lumenor_json SYSTEM INTERFACE ${lumenor_json_include})
else()
  target_include_directories(lumenor_json SYSTEM INTERFACE ${LUMENOR_JSON_INCLUDE_DIR})
endif()
