# Warnings, sanitizers and the flags that every target of the project shares.

add_library(htmlfilter_options INTERFACE)
target_include_directories(htmlfilter_options INTERFACE ${CMAKE_SOURCE_DIR})
target_compile_options(htmlfilter_options INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wconversion
  $<$<COMPILE_LANGUAGE:CXX>:-Wold-style-cast>
  -ffp-contract=off
  -funwind-tables
  $<$<COMPILE_LANGUAGE:C>:-fexceptions>)
# g++ 12 warns of an overlap in joining std::strings that can't be.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  target_compile_options(htmlfilter_options INTERFACE -Wno-restrict)
endif()
if(HTMLFILTER_WERROR)
  target_compile_options(htmlfilter_options INTERFACE -Werror)
endif()

if(HTMLFILTER_SANITIZE)
  # Unset host routines are one function under many types, which the function check would report.
  set(sanitize_flags -fsanitize=${HTMLFILTER_SANITIZE} -fno-omit-frame-pointer)
  if(HTMLFILTER_SANITIZE MATCHES "undefined")
    list(APPEND sanitize_flags -fno-sanitize-recover=undefined)
    if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
      list(APPEND sanitize_flags -fno-sanitize=function)
    endif()
  endif()
  target_compile_options(htmlfilter_options INTERFACE ${sanitize_flags})
  target_link_options(htmlfilter_options INTERFACE ${sanitize_flags})
endif()
