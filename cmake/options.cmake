# SPDX-License-Identifier: GPL-3.0-or-later
# Two interface targets that every target of the project links.

add_library(torvik_warnings INTERFACE)
target_compile_options(torvik_warnings INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  # GCC 12 sees overlapping copies in std::string that are not there.
  $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>)
if(TORVIK_WERROR)
  target_compile_options(torvik_warnings INTERFACE -Werror)
endif()

# A result repeats to the last digit at every optimisation level: no contraction, no fast-math.
add_library(torvik_compile_options INTERFACE)
target_compile_options(torvik_compile_options INTERFACE -ffp-contract=off)
target_compile_definitions(torvik_compile_options INTERFACE TORVIK_VERSION_MAJOR=${PROJECT_VERSION_MAJOR}
  TORVIK_VERSION_MINOR=${PROJECT_VERSION_MINOR} TORVIK_VERSION_REVISION=${PROJECT_VERSION_PATCH})
target_include_directories(torvik_compile_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

# torvik_library(NAME SOURCES... LINKS targets...)
function(torvik_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;LINKS" ${ARGN})
  add_library(${name} STATIC ${ARG_SOURCES})
  target_link_libraries(${name} PUBLIC torvik_compile_options ${ARG_LINKS} PRIVATE torvik_warnings)
endfunction()
