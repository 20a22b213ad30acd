# Qt's headers are most of what each source makes the compiler read. The sanitizers' builds, which find no more by
# reading them each time, read them once. The others do not: there each source must include what it uses.
#
# orvane_precompile() is called when all targets are there.
function(orvane_precompile)
  set(standard_headers <algorithm> <atomic> <functional> <memory> <mutex> <optional> <set> <thread> <vector>)
  file(WRITE "${CMAKE_BINARY_DIR}/precompiled.cpp" "")
  foreach(kind libraries tests)
    add_library(orvane_precompiled_${kind} OBJECT "${CMAKE_BINARY_DIR}/precompiled.cpp")
    set_target_properties(orvane_precompiled_${kind} PROPERTIES AUTOMOC OFF)
    # Only what every target of ours links with: a macro that one of them lacks would make the compiler reject it all.
    target_link_libraries(orvane_precompiled_${kind} PRIVATE orvane_build_flags Qt5::Core)
    target_include_directories(orvane_precompiled_${kind} SYSTEM PRIVATE
      $<TARGET_PROPERTY:Qt5::Widgets,INTERFACE_INCLUDE_DIRECTORIES>
      $<TARGET_PROPERTY:Qt5::Gui,INTERFACE_INCLUDE_DIRECTORIES>)
    target_precompile_headers(orvane_precompiled_${kind} PRIVATE ${standard_headers} <QtCore> <QWidget>)
  endforeach()
  target_compile_options(orvane_precompiled_tests PRIVATE ${ORVANE_TEST_OPTIONS})
  orvane_reuse_precompiled("${PROJECT_SOURCE_DIR}")
endfunction()

# Every target below a directory, whose sources are compiled with our flags.
function(orvane_reuse_precompiled directory)
  get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
  foreach(target IN LISTS targets)
    get_target_property(type ${target} TYPE)
    get_target_property(libraries ${target} LINK_LIBRARIES)
    get_target_property(with_qt ${target} AUTOMOC)
    if(NOT with_qt OR target MATCHES "^orvane_precompiled" OR NOT type MATCHES "EXECUTABLE|STATIC|SHARED|MODULE"
       OR NOT orvane_build_flags IN_LIST libraries)
      continue()
    endif()
    get_target_property(options ${target} COMPILE_OPTIONS)
    if(options AND ORVANE_TEST_OPTIONS AND "-O0" IN_LIST options)
      target_precompile_headers(${target} REUSE_FROM orvane_precompiled_tests)
    else()
      target_precompile_headers(${target} REUSE_FROM orvane_precompiled_libraries)
    endif()
  endforeach()
  get_property(directories DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
  foreach(subdirectory IN LISTS directories)
    orvane_reuse_precompiled("${subdirectory}")
  endforeach()
endfunction()
