# SQLite, built from its amalgamation (sqlite3.c, sqlite3.h) as the static library
# lumenor_sqlite. scripts/install-deps.sh puts the two files into third_party/sqlite/; on
# Windows, copy them there (or point LUMENOR_SQLITE_DIR at them). Either way they must
# match cmake/sqlite.sha256: a build never takes another SQLite than the pinned one.

set(LUMENOR_SQLITE_DIR ${PROJECT_SOURCE_DIR}/third_party/sqlite CACHE PATH
    "Folder holding SQLite's amalgamation (sqlite3.c and sqlite3.h)")

file(STRINGS ${PROJECT_SOURCE_DIR}/cmake/sqlite.sha256 lumenor_sqlite_checksums)
foreach(lumenor_sqlite_line IN LISTS lumenor_sqlite_checksums)
  if(NOT lumenor_sqlite_line MATCHES "^([0-9a-f]+)  (sqlite3\\.[ch])\r?$")
    message(FATAL_ERROR "cmake/sqlite.sha256: unexpected line '${lumenor_sqlite_line}'")
  endif()
  set(lumenor_sqlite_expected ${CMAKE_MATCH_1})
  set(lumenor_sqlite_file ${LUMENOR_SQLITE_DIR}/${CMAKE_MATCH_2})
  if(NOT EXISTS ${lumenor_sqlite_file})
    message(FATAL_ERROR "SQLite's ${CMAKE_MATCH_2} is not in ${LUMENOR_SQLITE_DIR}: run scripts/install-deps.sh "
                        "(on Windows, see README.md, Building)")
  endif()
  file(SHA256 ${lumenor_sqlite_file} lumenor_sqlite_actual)
  if(NOT lumenor_sqlite_actual STREQUAL lumenor_sqlite_expected)
    message(FATAL_ERROR "${lumenor_sqlite_file} is not the SQLite this build pins (cmake/sqlite.sha256): run "
                        "scripts/install-deps.sh, or copy the files named in README.md")
  endif()
  set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${lumenor_sqlite_file})
endforeach()
set_property(DIRECTORY ${PROJECT_SOURCE_DIR} APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS
             ${PROJECT_SOURCE_DIR}/cmake/sqlite.sha256)

# Third-party C: none of our warning options (lumenor_options) apply to it.
add_library(lumenor_sqlite STATIC ${LUMENOR_SQLITE_DIR}/sqlite3.c)
set_target_properties(lumenor_sqlite PROPERTIES LINKER_LANGUAGE C)
target_include_directories(lumenor_sqlite PUBLIC ${LUMENOR_SQLITE_DIR})
target_compile_definitions(lumenor_sqlite PRIVATE
  # Deleted content is overwritten in the file, not merely marked free.
  SQLITE_SECURE_DELETE
  # Each connection is used by one thread at a time.
  SQLITE_THREADSAFE=2
  SQLITE_OMIT_LOAD_EXTENSION
  SQLITE_DEFAULT_FOREIGN_KEYS=0
  SQLITE_DEFAULT_MEMSTATUS=0
  # The same Windows as the program's own code: nothing newer than Windows 7 is called.
  _WIN32_WINNT=0x0601 WINVER=0x0601)
if(NOT MSVC)
  target_compile_options(lumenor_sqlite PRIVATE -w)
endif()
