# Installs to a scratch folder and builds a small consumer against it: once as the consumer's own
# source, once with the C++ example of the README, taken out of it as it stands.
if(SANITIZE)
  message("skipped: a consumer without sanitizers cannot link a sanitized library")
  return()
endif()
function(run)
  execute_process(COMMAND ${ARGV} RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE out)
  if(NOT status EQUAL 0)
    message(FATAL_ERROR "${ARGV}\n${out}")
  endif()
endfunction()

file(REMOVE_RECURSE "${SCRATCH_DIR}")
run("${CMAKE_COMMAND}" --install "${BUILD_DIR}" --prefix "${SCRATCH_DIR}/prefix")

file(READ "${README}" readme)
string(FIND "${readme}" "```cpp" start)
if(start EQUAL -1)
  message(FATAL_ERROR "the README has no C++ example")
endif()
string(SUBSTRING "${readme}" ${start} -1 rest)
string(SUBSTRING "${rest}" 6 -1 rest)
string(FIND "${rest}" "```" end)
string(SUBSTRING "${rest}" 0 ${end} example)
file(WRITE "${SCRATCH_DIR}/readme_example.cpp" "${example}")

run("${CMAKE_COMMAND}" -G "${GENERATOR}" -S "${CONSUMER_DIR}" -B "${SCRATCH_DIR}/build"
  "-DCMAKE_PREFIX_PATH=${SCRATCH_DIR}/prefix" "-DCMAKE_CXX_COMPILER=${CXX_COMPILER}"
  "-DREADME_EXAMPLE=${SCRATCH_DIR}/readme_example.cpp")
run("${CMAKE_COMMAND}" --build "${SCRATCH_DIR}/build")
run("${SCRATCH_DIR}/build/consumer")
