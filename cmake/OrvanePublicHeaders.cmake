# orvane_public_headers(<target> PREFIX <prefix> HEADERS <files of the current source directory...> [FLAT])
#
# What users of a library include, as <prefix/header.h>, whether it is installed or built with them. In the build
# tree the prefix is a directory of links, one for each library, so that a header can be included only through the
# target that owns it. FLAT drops the headers' own directories, which are this source tree's order and not the user's.
function(orvane_public_headers target)
  cmake_parse_arguments(ARG "FLAT" "PREFIX" "HEADERS" ${ARGN})
  set(links "${CMAKE_BINARY_DIR}/include/${target}")
  file(REMOVE_RECURSE "${links}")
  foreach(header IN LISTS ARG_HEADERS)
    get_filename_component(directory "${header}" DIRECTORY)
    get_filename_component(name "${header}" NAME)
    if(ARG_FLAT OR NOT directory)
      set(place "${ARG_PREFIX}")
    else()
      set(place "${ARG_PREFIX}/${directory}")
    endif()
    file(MAKE_DIRECTORY "${links}/${place}")
    file(CREATE_LINK "${CMAKE_CURRENT_SOURCE_DIR}/${header}" "${links}/${place}/${name}" SYMBOLIC)
    install(FILES "${header}" DESTINATION "${CMAKE_INSTALL_INCLUDEDIR}/${place}" COMPONENT development)
  endforeach()
  get_target_property(type ${target} TYPE)
  set(scope PUBLIC)
  if(type STREQUAL INTERFACE_LIBRARY)
    set(scope INTERFACE)
  endif()
  target_include_directories(${target} ${scope}
    $<BUILD_INTERFACE:${links}> $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
endfunction()
