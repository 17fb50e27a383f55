# oc_test(line_fit [more sources]): builds line_fit_test.cpp into a test program of that name, with
# everything of the library reachable, and gives each of its tests to ctest.
function(oc_test name)
  add_executable(${name}_test ${name}_test.cpp ${ARGN})
  target_include_directories(${name}_test PRIVATE "${PROJECT_SOURCE_DIR}/tests")
  target_link_libraries(${name}_test PRIVATE
    $<LINK_LIBRARY:WHOLE_ARCHIVE,oc_whole> GTest::gmock GTest::gtest_main)
  gtest_discover_tests(${name}_test DISCOVERY_MODE PRE_TEST
    PROPERTIES LABELS unit TIMEOUT 300)
endfunction()

# The same for the parts of the command.
function(oc_tool_test name)
  oc_test(${name})
  target_link_libraries(${name}_test PRIVATE glyphline_parts)
endfunction()
