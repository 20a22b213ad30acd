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
foreach(component runtime development tools documents)
  run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${prefix}" --component ${component})
endforeach()
# What belongs to no component would be in no package.
run(${CMAKE_COMMAND} --install "${BUILD_DIR}" --prefix "${WORK_DIR}/forgotten" --component Unspecified)
file(GLOB_RECURSE forgotten "${WORK_DIR}/forgotten/*")
if(forgotten)
  message(FATAL_ERROR "Installed without a component: ${forgotten}")
endif()

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
run(nm -DC --defined-only "${library}" "${prefix}/${LIBDIR}/liborvanenotices.so")
if(output MATCHES "[A-Za-z:]*Private::")
  message(FATAL_ERROR "Private parts are exported: ${CMAKE_MATCH_0}")
endif()

# The consumer holds each installed header, too.
run(${CMAKE_COMMAND} -S "${CONSUMER_DIR}" -B "${WORK_DIR}/cmake" -G Ninja "-DHEADERS=${prefix}/include"
  "-DCMAKE_PREFIX_PATH=${prefix}" "-DCMAKE_CXX_COMPILER=${CXX}" "-DCMAKE_CXX_FLAGS=${flags}"
  "-DCMAKE_CXX_COMPILER_LAUNCHER=${LAUNCHER}")
run(${CMAKE_COMMAND} --build "${WORK_DIR}/cmake")
run("${WORK_DIR}/cmake/consumer")

set(ENV{PKG_CONFIG_PATH} "${prefix}/${LIBDIR}/pkgconfig")
run(pkg-config --cflags --libs orvaneecproxyclient orvanenotices orvanememorymodel orvanemodeltester)
string(STRIP "${output}" pkgFlags)
separate_arguments(pkgFlags UNIX_COMMAND "${pkgFlags}")
separate_arguments(flags UNIX_COMMAND "${flags}")
run(${CXX} -std=c++17 -fPIC ${flags} "${CONSUMER_DIR}/main.cpp" -o "${WORK_DIR}/pkgconsumer" ${pkgFlags}
  "-Wl,-rpath,${prefix}/${LIBDIR}")
run("${WORK_DIR}/pkgconsumer")

# The programs start from where they are installed.
foreach(program orvane-console-simulator orvane-console-host)
  run("${prefix}/bin/${program}" --version)
endforeach()
