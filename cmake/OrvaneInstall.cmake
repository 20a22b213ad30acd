# What a host application gets: the two shared libraries, the model kit and the model tester, their headers,
# a CMake package and a pkg-config file.
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/OrvaneECProxyClient")

# Each finds the other beside it wherever they are installed.
set_target_properties(orvaneecproxyclient orvanenotices orvaneplatform PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS orvaneecproxyclient orvanenotices orvaneplatform orvaneecprotocol orvanememorymodel
  orvanemodeltester
  EXPORT OrvaneECProxyClientTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR})
install(EXPORT OrvaneECProxyClientTargets NAMESPACE OrvaneECProxyClient:: DESTINATION ${package_dir})

configure_package_config_file(cmake/OrvaneECProxyClientConfig.cmake.in
  "${CMAKE_BINARY_DIR}/OrvaneECProxyClientConfig.cmake" INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${CMAKE_BINARY_DIR}/OrvaneECProxyClientConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/OrvaneECProxyClientConfig.cmake"
  "${CMAKE_BINARY_DIR}/OrvaneECProxyClientConfigVersion.cmake" DESTINATION ${package_dir})

# Relative to the file itself, so that the package works wherever it is unpacked.
file(RELATIVE_PATH pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
configure_file(cmake/orvaneecproxyclient.pc.in "${CMAKE_BINARY_DIR}/orvaneecproxyclient.pc" @ONLY)
install(FILES "${CMAKE_BINARY_DIR}/orvaneecproxyclient.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)

# Headers called *_p.h are the libraries' own. The library installs its own headers where it lists them.
foreach(library orvaneplatform orvanememorymodel orvanemodeltester)
  install(DIRECTORY src/libs/${library}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/${library}
    FILES_MATCHING PATTERN "*.h" PATTERN "*_p.h" EXCLUDE)
endforeach()
install(FILES src/libs/orvanenotices/noticepresenter.h src/libs/orvanenotices/orvanenotices_global.h
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/orvanenotices)
