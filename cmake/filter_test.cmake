# filter_test(<name> FOLDERS <folders...> SOURCES <files...> [LIBRARIES <targets...>])
#
# One test program. FOLDERS names the folders of the filter whose objects it links.
include(GoogleTest)
function(filter_test name)
  cmake_parse_arguments(TEST "" "" "FOLDERS;SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${TEST_SOURCES} ${CMAKE_SOURCE_DIR}/tests/common/test_main.cpp)
  target_link_libraries(${name} PRIVATE htmlfilter_options zvsupport GTest::gtest ${TEST_LIBRARIES})
  foreach(folder ${TEST_FOLDERS})
    target_link_libraries(${name} PRIVATE htmlfilter_${folder})
  endforeach()
  target_compile_definitions(${name} PRIVATE
    HTMLFILTER_SOURCE_DIR="${CMAKE_SOURCE_DIR}" HTMLFILTER_BINARY_DIR="${CMAKE_BINARY_DIR}")
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
