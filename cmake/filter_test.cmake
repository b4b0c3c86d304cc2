# filter_test(<name> FOLDERS <folders...> SOURCES <files...> [LIBRARIES <targets...>])
#
# One test program. FOLDERS names the folders of the filter whose objects it links.
include(GoogleTest)

# What nearly every test includes is compiled once. Tests are built with little optimization: it is
# the code under test that has to be as users get it.
function(filter_test_options name)
  target_compile_options(${name} PRIVATE -O1)
  # More of what g++ 12 sees in std::string where there is nothing.
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(${name} PRIVATE -Wno-array-bounds -Wno-stringop-overflow)
  endif()
  target_compile_definitions(${name} PRIVATE
    HTMLFILTER_SOURCE_DIR="${CMAKE_SOURCE_DIR}" HTMLFILTER_BINARY_DIR="${CMAKE_BINARY_DIR}")
  if(NOT TARGET test_headers)
    add_executable(test_headers ${CMAKE_SOURCE_DIR}/tests/common/test_headers.cpp)
    target_link_libraries(test_headers PRIVATE htmlfilter_options GTest::gtest)
    target_precompile_headers(test_headers PRIVATE
      <gtest/gtest.h> <algorithm> <array> <cstdint> <memory> <string> <string_view> <vector>)
    filter_test_options(test_headers)
  endif()
  if(NOT name STREQUAL "test_headers")
    target_precompile_headers(${name} REUSE_FROM test_headers)
  endif()
endfunction()

# A source of a test in C, which the precompiled headers are not for.
function(filter_test_c_source name source)
  add_library(${name}_c OBJECT ${source})
  target_link_libraries(${name}_c PRIVATE htmlfilter_options)
  target_sources(${name} PRIVATE $<TARGET_OBJECTS:${name}_c>)
endfunction()

function(filter_test name)
  cmake_parse_arguments(TEST "" "" "FOLDERS;SOURCES;LIBRARIES" ${ARGN})
  add_executable(${name} ${TEST_SOURCES} ${CMAKE_SOURCE_DIR}/tests/common/test_main.cpp)
  target_link_libraries(${name} PRIVATE htmlfilter_options zvsupport GTest::gtest ${TEST_LIBRARIES})
  foreach(folder ${TEST_FOLDERS})
    target_link_libraries(${name} PRIVATE htmlfilter_${folder})
  endforeach()
  filter_test_options(${name})
  gtest_discover_tests(${name} DISCOVERY_MODE PRE_TEST PROPERTIES TIMEOUT 300)
endfunction()
