# filter_folder(<name> DEPENDS <folders...> SOURCES <files...>)
#
# One folder of the filter as an object library `htmlfilter_<name>`. DEPENDS names the folders that
# it may call, so that the tests of a folder link what lies below it and nothing else.
function(filter_folder name)
  cmake_parse_arguments(FOLDER "" "" "DEPENDS;SOURCES" ${ARGN})
  set(target htmlfilter_${name})
  add_library(${target} OBJECT ${FOLDER_SOURCES})
  target_link_libraries(${target} PUBLIC htmlfilter_options zvsupport)
  set_property(GLOBAL APPEND PROPERTY HTMLFILTER_FOLDERS ${target})
  set_property(TARGET ${target} PROPERTY FILTER_DEPENDS ${FOLDER_DEPENDS})
endfunction()
