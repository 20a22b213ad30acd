# What is installed, as the components that the Debian packages are made of:
#   runtime      the shared libraries
#   development  headers, the kit and the model tester, a CMake package and pkg-config files
#   tools        the simulator, the reference host, the model check
#   documents    the documents and the examples
set(package_dir "${CMAKE_INSTALL_LIBDIR}/cmake/OrvaneECProxyClient")
set(libraries orvaneecproxyclient orvanenotices orvaneplatform orvanememorymodel orvanemodeltester)

# Each finds the others wherever all of them are installed. The packages need none of this, see PreparePackages.
set_target_properties(orvaneecproxyclient orvanenotices orvaneplatform PROPERTIES INSTALL_RPATH "$ORIGIN")
install(TARGETS ${libraries} orvaneecprotocol
  EXPORT OrvaneECProxyClientTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development)
install(EXPORT OrvaneECProxyClientTargets NAMESPACE OrvaneECProxyClient:: DESTINATION ${package_dir}
  COMPONENT development)

configure_package_config_file(cmake/OrvaneECProxyClientConfig.cmake.in
  "${CMAKE_BINARY_DIR}/OrvaneECProxyClientConfig.cmake" INSTALL_DESTINATION ${package_dir})
write_basic_package_version_file("${CMAKE_BINARY_DIR}/OrvaneECProxyClientConfigVersion.cmake"
  COMPATIBILITY SameMajorVersion)
install(FILES "${CMAKE_BINARY_DIR}/OrvaneECProxyClientConfig.cmake"
  "${CMAKE_BINARY_DIR}/OrvaneECProxyClientConfigVersion.cmake" DESTINATION ${package_dir} COMPONENT development)

# orvane_pkgconfig(<library> <description> <packages that users of it compile and link with, too>)
function(orvane_pkgconfig library description requires)
  # Relative to the file itself, so that it is right wherever the package is unpacked.
  file(RELATIVE_PATH pc_to_prefix "/${CMAKE_INSTALL_LIBDIR}/pkgconfig" "/")
  configure_file(cmake/library.pc.in "${CMAKE_BINARY_DIR}/${library}.pc" @ONLY)
  install(FILES "${CMAKE_BINARY_DIR}/${library}.pc" DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
    COMPONENT development)
endfunction()
set(same_version "= ${PROJECT_VERSION}")
orvane_pkgconfig(orvaneplatform "Interfaces and records of the model that the console works on"
  "Qt5Core >= 5.15 Qt5Widgets")
orvane_pkgconfig(orvaneecproxyclient "${PROJECT_DESCRIPTION}"
  "orvaneplatform ${same_version} Qt5Network Qt5Gui")
orvane_pkgconfig(orvanenotices "What the console says to the user, shown with plain Qt widgets"
  "orvaneplatform ${same_version}")
orvane_pkgconfig(orvanememorymodel "A model in memory for hosts that have hardware and no model"
  "orvaneplatform ${same_version}")
orvane_pkgconfig(orvanemodeltester "Rules for the application's model, checked while it works"
  "orvaneplatform ${same_version}")

if(ORVANE_BUILD_APPS)
  # The programs find the libraries beside them, in a tree that is not the system's.
  file(RELATIVE_PATH bin_to_lib "/${CMAKE_INSTALL_BINDIR}" "/${CMAKE_INSTALL_LIBDIR}")
  set(programs orvane-console-simulator orvane-console-host orvane-model-check)
  set_target_properties(${programs} PROPERTIES INSTALL_RPATH "$ORIGIN/${bin_to_lib}")
  install(TARGETS ${programs} RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT tools)
endif()

# As they lie in the source tree, so that their links hold.
set(document_dir "${CMAKE_INSTALL_DATAROOTDIR}/doc/orvaneecproxyclient")
install(FILES README.md CHANGELOG.md DESTINATION ${document_dir} COMPONENT documents)
install(DIRECTORY docs examples DESTINATION ${document_dir} COMPONENT documents)
