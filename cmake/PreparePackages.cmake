# Run by cpack between install and packing: what a Debian package has and an installed tree does not.
function(run)
  execute_process(COMMAND ${ARGN} COMMAND_ERROR_IS_FATAL ANY)
endfunction()

foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  set(usr "${CPACK_TEMPORARY_DIRECTORY}/${component}/usr")
  string(TOUPPER "${component}" COMPONENT)
  set(package "${CPACK_DEBIAN_${COMPONENT}_PACKAGE_NAME}")

  # The system finds its libraries by itself; a path of their own would only get in its way.
  file(GLOB_RECURSE binaries LIST_DIRECTORIES false "${usr}/lib/*.so.*" "${usr}/bin/*")
  foreach(binary IN LISTS binaries)
    if(NOT IS_SYMLINK "${binary}")
      run(chrpath --delete "${binary}")
    endif()
  endforeach()
  file(GLOB_RECURSE archives "${usr}/lib/*.a")
  foreach(archive IN LISTS archives)
    run(strip --strip-debug --enable-deterministic-archives "${archive}")
  endforeach()

  file(GLOB_RECURSE manuals "${usr}/share/man/*.[1-8]")
  foreach(manual IN LISTS manuals)
    run(gzip -9n "${manual}")
  endforeach()

  set(documents "${usr}/share/doc/${package}")
  # file(INSTALL) would go by cpack's DESTDIR.
  file(MAKE_DIRECTORY "${documents}")
  file(COPY_FILE "${CPACK_ORVANE_PACKAGING}/copyright" "${documents}/copyright")
  run("${CPACK_ORVANE_PACKAGING}/debian-changelog" "${CPACK_ORVANE_CHANGELOG}" ${package}
    "${CPACK_PACKAGE_VERSION}" "${CPACK_PACKAGE_CONTACT}" "${documents}/changelog")
  run(gzip -9n "${documents}/changelog")
  if(EXISTS "${CPACK_ORVANE_PACKAGING}/${package}.lintian-overrides")
    file(MAKE_DIRECTORY "${usr}/share/lintian/overrides")
    file(COPY_FILE "${CPACK_ORVANE_PACKAGING}/${package}.lintian-overrides" "${usr}/share/lintian/overrides/${package}")
  endif()
endforeach()
