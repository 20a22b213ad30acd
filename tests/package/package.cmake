# Installs into a directory of its own, then builds the consumer against what lies there.
function(run)
  execute_process(COMMAND ${ARGN} RESULT_VARIABLE result OUTPUT_VARIABLE output ERROR_VARIABLE output)
  if(NOT result EQUAL 0)
    string(REPLACE ";" " " command "${ARGN}")
    message(FATAL_ERROR "${command}\n${output}")
  endif()
  set(output "${output}" PARENT_SCOPE)
endfunction()

file(REMOVE_RECURSE "${WORK_DIR}")
set(prefix "${WORK_DIR}/prefix")
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}")

set(flags "")
if(SANITIZE)
  set(flags "-fsanitize=${SANITIZE}")
endif()

# The name that the dynamic linker looks for, and nothing exported but what the export header marks.
set(library "${prefix}/${LIBDIR}/${SONAME}")
run(readelf -d "${library}")
if(NOT output MATCHES "SONAME.*\\[${SONAME}\\]")
  message(FATAL_ERROR "The library's SONAME is not ${SONAME}:\n${output}")
endif()
run(nm -DC --defined-only "${library}")
if(output MATCHES "Internal::[A-Za-z]*Private::")
  message(FATAL_ERROR "Private parts are exported: ${CMAKE_MATCH_0}")
endif()

run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${WORK_DIR}/cmake" -G Ninja
  "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${flags}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}/cmake")
run("${WORK_DIR}/cmake/consumer")

set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
run(pkg-config --cflags --libs orvaneecproxyclient)
string(STRIP "${output}" pkgFlags)
separate_arguments(pkgFlags UNIX_COMMAND "${pkgFlags}")
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX} -std=c++17 -fPIC ${flags} "${CONSUMER_DIR}/main.cpp" -o "${WORK_DIR}/pkgconsumer" ${pkgFlags}
  "-Wl,-rpath,${prefix}/${LIBDIR}")
run("${WORK_DIR}/pkgconsumer")

# Every header laid down can be included: none needs one that stayed behind.
file(GLOB_RECURSE headers "${prefix}/*.h")
if(NOT headers)
  message(FATAL_ERROR "No headers are installed")
endif()
list(TRANSFORM headers REPLACE "(.+)" "#include \"\\1\"\n" OUTPUT_VARIABLE includes)
string(JOIN "" includes ${includes})
file(WRITE "${WORK_DIR}/allheaders.cpp" "${includes}")
run(${CXX} -std=c++17 -fPIC -fsyntax-only "${WORK_DIR}/allheaders.cpp" ${pkgFlags})
