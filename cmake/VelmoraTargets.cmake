# What every target of the project shares: language level, warnings, sanitizers, where binaries go.

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_EXPORT_COMPILE_COMMANDS ON)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY "${PROJECT_BINARY_DIR}/bin")

add_library(velmora_options INTERFACE)
target_compile_options(
  velmora_options
  INTERFACE -Wall
            -Wextra
            -Wpedantic
            -Wshadow
            -Wnon-virtual-dtor
            -Wold-style-cast
            -Wcast-qual
            -Wundef
            -Wimplicit-fallthrough
            -Werror
            # GCC 12 warns of overlapping and endless copies inside its own std::string.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict;-Wno-stringop-overflow>
            # Saved files are compared byte for byte: no fused multiply-add behind our back.
            -ffp-contract=off)
if(VELMORA_SANITIZE)
  target_compile_options(velmora_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                   -fno-omit-frame-pointer)
  target_link_options(velmora_options INTERFACE -fsanitize=address,undefined)
endif()

if(VELMORA_BUILD_FUZZ AND NOT VELMORA_BUILD_TESTS)
  # The fuzzer sees which code an input reaches in the libraries too. Beside the tests it only reads its seeds.
  target_compile_options(velmora_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# A faster linker where there is one.
find_program(VELMORA_MOLD mold)
if(VELMORA_MOLD)
  target_link_options(velmora_options INTERFACE -fuse-ld=mold)
endif()

# Headers of the standard library that most sources read, read once for all libraries. Each source still includes what it
# uses: the preset "clang" builds without.
set(VELMORA_COMMON_HEADERS <algorithm> <array> <cmath> <cstdint> <filesystem> <functional> <limits> <memory> <optional>
    <string> <string_view> <utility> <vector>)

# velmora_precompile(velmora_geometry): the target reads the common headers precompiled; the first one does the work.
function(velmora_precompile target)
  get_property(owner GLOBAL PROPERTY VELMORA_PRECOMPILED_BY)
  if(owner)
    target_precompile_headers(${target} REUSE_FROM ${owner})
  else()
    target_precompile_headers(${target} PRIVATE ${VELMORA_COMMON_HEADERS})
    set_property(GLOBAL PROPERTY VELMORA_PRECOMPILED_BY ${target})
  endif()
endfunction()

# velmora_add_library(geometry SOURCES a.cpp b.cpp DEPENDS algorithms Boost::regex)
#
# Makes velmora_<name> with its own folder as the only include root it adds, so that a file can include
# only what stands in its own folder or in the folders that it declares as dependencies. FOLDERS names subfolders that
# are include roots too: an include names the file alone, wherever it stands. USES names dependencies of the sources
# alone, whose headers those that depend on the library do not see. PRECOMPILE names headers that are
# precompiled for it instead of the common ones.
function(velmora_add_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS;USES;FOLDERS;PRECOMPILE")
  add_library(velmora_${name} STATIC ${arg_SOURCES})
  list(TRANSFORM arg_FOLDERS PREPEND "${CMAKE_CURRENT_SOURCE_DIR}/")
  target_include_directories(velmora_${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}" ${arg_FOLDERS})
  velmora_link(velmora_${name} PUBLIC ${arg_DEPENDS})
  velmora_link(velmora_${name} PRIVATE ${arg_USES})
  target_link_libraries(velmora_${name} PUBLIC velmora_options)
  if(arg_PRECOMPILE)
    target_precompile_headers(velmora_${name} PRIVATE ${VELMORA_COMMON_HEADERS} ${arg_PRECOMPILE})
  else()
    velmora_precompile(velmora_${name})
  endif()
endfunction()

# velmora_link(target PUBLIC geometry Qt6::Widgets): a name without "::" that is one of ours means velmora_<name>.
function(velmora_link target visibility)
  foreach(dependency IN LISTS ARGN)
    if(TARGET velmora_${dependency})
      target_link_libraries(${target} ${visibility} velmora_${dependency})
    else()
      target_link_libraries(${target} ${visibility} ${dependency})
    endif()
  endforeach()
endfunction()
