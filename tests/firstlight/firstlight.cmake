# Builds the example against the installed package and plays each step of the document at it.
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
foreach(step screens:twoscreens layers:layers)
  string(REPLACE ":" ";" step "${step}")
  list(GET step 0 session)
  list(GET step 1 show)
  run("${OWN_NETWORK}" "${PLAY}" "${SIMULATOR}" "${EXAMPLE_DIR}/${session}.session"
    "${WORK_DIR}/minimalhost" "${KEYBOARD}" "${EXAMPLE_DIR}/${show}.json")
endforeach()
