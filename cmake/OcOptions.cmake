# Switches of the build, and the compiler options that every room of the library shares.
option(OC_DEVELOPER "Build tests, benchmarks and fuzz targets; warnings are errors" ${PROJECT_IS_TOP_LEVEL})
option(OC_TOOL "Build the command glyphline" ${PROJECT_IS_TOP_LEVEL})
set(OC_SANITIZE "" CACHE STRING "Sanitizers to build with: empty, 'address,undefined', or 'thread'")
option(OC_COVERAGE "Measure test coverage" OFF)
option(OC_FUZZ "Build the fuzz targets with libFuzzer; without it they replay their corpus" OFF)

if(OC_DEVELOPER AND NOT OC_TOOL)
  message(FATAL_ERROR "OC_DEVELOPER needs OC_TOOL: the tests run the command")
endif()

if(NOT CMAKE_BUILD_TYPE AND NOT CMAKE_CONFIGURATION_TYPES)
  set(CMAKE_BUILD_TYPE Release)
endif()

set(CMAKE_CXX_STANDARD 20)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_POSITION_INDEPENDENT_CODE ON)
set(CMAKE_CXX_VISIBILITY_PRESET hidden)
set(CMAKE_VISIBILITY_INLINES_HIDDEN ON)

find_package(Threads REQUIRED)

add_library(oc_build_options INTERFACE)
target_include_directories(oc_build_options INTERFACE
  "${PROJECT_SOURCE_DIR}/include" "${PROJECT_SOURCE_DIR}")
target_link_libraries(oc_build_options INTERFACE Threads::Threads)
# One result on every machine: no fused multiply-add behind our back, no build path in a binary.
target_compile_options(oc_build_options INTERFACE
  -ffp-contract=off "-fmacro-prefix-map=${PROJECT_SOURCE_DIR}/=")
if(OC_DEVELOPER)
  target_compile_options(oc_build_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)
endif()
if(OC_SANITIZE)
  target_compile_options(oc_build_options INTERFACE
    "-fsanitize=${OC_SANITIZE}" -fno-sanitize-recover=all -fno-omit-frame-pointer -g)
  target_link_options(oc_build_options INTERFACE "-fsanitize=${OC_SANITIZE}")
endif()
if(OC_FUZZ)
  target_compile_options(oc_build_options INTERFACE -fsanitize=fuzzer-no-link)
endif()
if(OC_COVERAGE)
  target_compile_options(oc_build_options INTERFACE --coverage -O0 -g)
  target_link_options(oc_build_options INTERFACE --coverage)
endif()
