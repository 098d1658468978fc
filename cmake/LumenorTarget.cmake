# Compiler settings every Lumenor target shares: Unicode Win32, high warnings, static runtime.

if(MSVC)
  set(CMAKE_MSVC_RUNTIME_LIBRARY "MultiThreaded$<$<CONFIG:Debug>:Debug>")
  set(CMAKE_RC_FLAGS "${CMAKE_RC_FLAGS} /c65001")
else()
  set(CMAKE_RC_FLAGS "${CMAKE_RC_FLAGS} --codepage=65001")
endif()

add_library(lumenor_options INTERFACE)
target_compile_definitions(lumenor_options INTERFACE
  UNICODE _UNICODE NOMINMAX WIN32_LEAN_AND_MEAN _WIN32_WINNT=0x0601 WINVER=0x0601)
target_include_directories(lumenor_options INTERFACE ${PROJECT_SOURCE_DIR})

if(MSVC)
  target_compile_options(lumenor_options INTERFACE /W4 /permissive- /utf-8 /EHsc)
  # The manifest comes from the resources (res/manifest.rc); one from the linker as well
  # would be a second resource of the same name.
  target_link_options(lumenor_options INTERFACE /MANIFEST:NO)
  if(LUMENOR_WARNINGS_AS_ERRORS)
    target_compile_options(lumenor_options INTERFACE /WX)
  endif()
else()
  target_compile_options(lumenor_options INTERFACE
    -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wformat=2 -Wimplicit-fallthrough -Wcast-qual)
  if(LUMENOR_WARNINGS_AS_ERRORS)
    target_compile_options(lumenor_options INTERFACE -Werror)
  endif()
  # Nothing but setting.ini may be needed beside the executables.
  target_link_options(lumenor_options INTERFACE -static -static-libgcc -static-libstdc++ -municode)
endif()

# A library of product code: one subsystem folder, sharing the settings above.
function(lumenor_add_library name)
  add_library(${name} STATIC ${ARGN})
  target_link_libraries(${name} PUBLIC lumenor_options)
endfunction()

# The pictures that res/artwork.rc names: the resource compiler reports no dependency on
# them, so a redrawn picture would otherwise not be compiled in again.
file(GLOB LUMENOR_ARTWORK_FILES CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/res/art/*)
# Nor on the resource scripts, headers, the manifest and the built-in rules that
# res/lumenor.rc includes.
file(GLOB LUMENOR_RESOURCE_PARTS CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/res/*.rc ${PROJECT_SOURCE_DIR}/res/*.h
     ${PROJECT_SOURCE_DIR}/res/*.manifest ${PROJECT_SOURCE_DIR}/res/rules/*.xml)

# Resources are linked into each executable (a resource object inside a static library
# would be dropped by the linker).
function(lumenor_add_resources target)
  target_sources(${target} PRIVATE ${PROJECT_SOURCE_DIR}/res/lumenor.rc)
  set_property(SOURCE ${PROJECT_SOURCE_DIR}/res/lumenor.rc PROPERTY OBJECT_DEPENDS ${LUMENOR_ARTWORK_FILES} ${LUMENOR_RESOURCE_PARTS})
endfunction()
