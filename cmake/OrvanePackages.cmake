# The Debian packages, one for each component: `scripts/packages` builds and checks them.
set(CPACK_GENERATOR DEB)
set(CPACK_COMPONENTS_ALL runtime development tools documents)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_PACKAGE_DIRECTORY "${CMAKE_BINARY_DIR}/packages")
set(CPACK_PACKAGE_NAME orvaneecproxyclient)
# Whoever gives the packages to others puts their own name here: cpack -D CPACK_PACKAGE_CONTACT="…"
set(CPACK_PACKAGE_CONTACT "Orvane console team <console@orvane.example.com>")
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "physical control console of a video processor")
set(CPACK_PRE_BUILD_SCRIPTS "${CMAKE_CURRENT_SOURCE_DIR}/cmake/PreparePackages.cmake")
set(CPACK_ORVANE_PACKAGING "${CMAKE_CURRENT_SOURCE_DIR}/packaging")
set(CPACK_ORVANE_CHANGELOG "${CMAKE_CURRENT_SOURCE_DIR}/CHANGELOG.md")

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS "${CMAKE_LIBRARY_OUTPUT_DIRECTORY}")
set(runtime_of_this_build "liborvaneecproxyclient1 (= ${PROJECT_VERSION})")

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME liborvaneecproxyclient1)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# What packages of programs that are linked with the libraries depend on, and the loader's cache.
file(WRITE "${CMAKE_BINARY_DIR}/shlibs" "")
foreach(library orvaneecproxyclient orvanenotices orvaneplatform)
  file(APPEND "${CMAKE_BINARY_DIR}/shlibs" "lib${library} ${PROJECT_VERSION_MAJOR} \
liborvaneecproxyclient1 (>= ${PROJECT_VERSION})\n")
endforeach()
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
  "${CMAKE_BINARY_DIR}/shlibs" "${CMAKE_CURRENT_SOURCE_DIR}/packaging/triggers")
set(CPACK_DEBIAN_RUNTIME_DEBUGINFO_PACKAGE ON)
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION
"Works the touch-screen application of a video processor from its physical
 console: keys with LEDs and labels, a T-Bar, panel lights.")

set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME liborvaneecproxyclient-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${runtime_of_this_build}, qtbase5-dev (>= 5.15)")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "orvaneecproxyclient-doc, orvaneecproxyclient-tools")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION
"Headers, a model kit and a model tester for applications that want to be
 worked from the console; found by CMake and by pkg-config.")

set(CPACK_DEBIAN_TOOLS_PACKAGE_NAME orvaneecproxyclient-tools)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SECTION utils)
set(CPACK_DEBIAN_TOOLS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_TOOLS_PACKAGE_DEPENDS "${runtime_of_this_build}")
set(CPACK_DEBIAN_TOOLS_PACKAGE_RECOMMENDS "fonts-dejavu-core, orvaneecproxyclient-doc")
set(CPACK_DEBIAN_TOOLS_DEBUGINFO_PACKAGE ON)
set(CPACK_COMPONENT_TOOLS_DESCRIPTION
"A simulated console that speaks the real one's protocol, a reference host
 application, and a check of models without a console.")

set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_NAME orvaneecproxyclient-doc)
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_SECTION doc)
set(CPACK_DEBIAN_DOCUMENTS_PACKAGE_ARCHITECTURE all)
set(CPACK_COMPONENT_DOCUMENTS_DESCRIPTION
"The documents, and examples: a minimal host, a host with a model of its own,
 a keyboard, a show.")
include(CPack)
