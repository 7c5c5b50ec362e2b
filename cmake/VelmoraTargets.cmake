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
            # GCC 12 warns of overlapping copies inside its own std::string.
            $<$<CXX_COMPILER_ID:GNU>:-Wno-restrict>
            # Saved files are compared byte for byte: no fused multiply-add behind our back.
            -ffp-contract=off)
if(VELMORA_SANITIZE)
  target_compile_options(velmora_options INTERFACE -fsanitize=address,undefined -fno-sanitize-recover=undefined
                                                   -fno-omit-frame-pointer)
  target_link_options(velmora_options INTERFACE -fsanitize=address,undefined)
endif()

if(VELMORA_BUILD_FUZZ)
  # The fuzzer sees which code an input reaches in the libraries too.
  target_compile_options(velmora_options INTERFACE -fsanitize=fuzzer-no-link)
endif()

# velmora_add_library(geometry SOURCES a.cpp b.cpp DEPENDS algorithms Boost::regex)
#
# Makes velmora_<name> with its own folder as the only include root it adds, so that a file can include
# only what stands in its own folder or in the folders that it declares as dependencies.
function(velmora_add_library name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;DEPENDS")
  add_library(velmora_${name} STATIC ${arg_SOURCES})
  target_include_directories(velmora_${name} PUBLIC "${CMAKE_CURRENT_SOURCE_DIR}")
  velmora_link(velmora_${name} PUBLIC ${arg_DEPENDS})
  target_link_libraries(velmora_${name} PUBLIC velmora_options)
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
