# Builds the example against the installed package and plays each step of the document at it. A step is
# PROGRAM:SESSION or PROGRAM:SESSION:SHOW; the steps are divided by commas.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "${command}\n${output}")
  endif()
endfunction()

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()
file(REMOVE_RECURSE "${WORK_DIR}")
run(${CMAKE_COMMAND} -S "${EXAMPLE_DIR}" -B "${WORK_DIR}" -G Ninja
  "-DCMAKE_PREFIX_PATH=${PREFIX}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${flags}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}")
string(REPLACE "," ";" steps "${STEPS}")
foreach(step IN LISTS steps)
  string(REPLACE ":" ";" step "${step}")
  list(POP_FRONT step program session show)
  if(show)
    set(show "${EXAMPLE_DIR}/${show}")
  endif()
  run("${OWN_NETWORK}" "${PLAY}" "${SIMULATOR}" "${EXAMPLE_DIR}/${session}"
    "${WORK_DIR}/${program}" "${KEYBOARD}" ${show})
endforeach()
