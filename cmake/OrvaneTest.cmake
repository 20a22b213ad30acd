# orvane_add_test(<name> SOURCES ... [LIBS ...] [PORTS] [TIMEOUT seconds] [LABELS ...])
#
# A Qt Test executable run by ctest, without a display. PORTS marks a test that opens the two fixed UDP
# ports: such tests get a network namespace of their own where the machine allows it, and never run side
# by side where it does not.
function(orvane_add_test name)
  cmake_parse_arguments(ARG "PORTS" "TIMEOUT" "SOURCES;LIBS;LABELS" ${ARGN})
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE orvane_build_flags Qt5::Test ${ARG_LIBS})
  target_compile_options(${name} PRIVATE ${ORVANE_TEST_OPTIONS})
  set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY "${CMAKE_BINARY_DIR}/tests")
  # The emulator of a cross build; nothing otherwise.
  set(command ${CMAKE_CROSSCOMPILING_EMULATOR} $<TARGET_FILE:${name}>)
  if(ARG_PORTS)
    list(PREPEND command "${PROJECT_SOURCE_DIR}/scripts/with-own-network")
  endif()
  add_test(NAME ${name} COMMAND ${command})
  orvane_test_properties(${name} PORTS ${ARG_PORTS} TIMEOUT ${ARG_TIMEOUT} LABELS ${ARG_LABELS})
endfunction()

# The ctest properties that every test of ours has, executable or script.
function(orvane_test_properties name)
  cmake_parse_arguments(ARG "" "PORTS;TIMEOUT" "LABELS" ${ARGN})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 120)
  endif()
  # Qt's offscreen platform never frees its screen, which the leak check would report.
  set(platform offscreen)
  if(ORVANE_SANITIZE MATCHES address)
    set(platform minimal)
  endif()
  set(environment "QT_QPA_PLATFORM=${platform}"
      "ASAN_OPTIONS=detect_leaks=1:abort_on_error=0" "UBSAN_OPTIONS=print_stacktrace=1"
      "LSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/sanitizers/lsan.supp"
      "TSAN_OPTIONS=suppressions=${PROJECT_SOURCE_DIR}/tests/sanitizers/tsan.supp:second_deadlock_stack=1:history_size=7")
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} ENVIRONMENT "${environment}"
                       LABELS "${ARG_LABELS}")
  if(ARG_PORTS)
    set_tests_properties(${name} PROPERTIES RESOURCE_LOCK console_ports)
  endif()
endfunction()
