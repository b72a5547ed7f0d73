# Installs the build into a folder of its own, builds the examples against it and runs them.

function(run what)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE status OUTPUT_VARIABLE output ERROR_VARIABLE output)
    if(NOT status EQUAL 0)
        message(FATAL_ERROR "${what} failed (${status}):\n${output}")
    endif()
    set(output "${output}" PARENT_SCOPE)
endfunction()

function(expect text)
    string(FIND "${output}" "${text}" at)
    if(at EQUAL -1)
        message(FATAL_ERROR "expected \"${text}\" in\n${output}")
    endif()
endfunction()

file(REMOVE_RECURSE ${WORK})
run("installing" ${CMAKE_COMMAND} --install ${BUILD} --prefix ${WORK}/prefix)

set(flags "-Wall -Wextra -Wpedantic -Werror")
if(SANITIZE)
    string(APPEND flags " -fsanitize=${SANITIZE} -fno-sanitize-recover=all")
endif()
foreach(example host plugin)
    run("configuring ${example}" ${CMAKE_COMMAND} -S ${SOURCE}/${example} -B ${WORK}/${example} -G ${GENERATOR}
        -DCMAKE_CXX_COMPILER=${COMPILER} -DCMAKE_PREFIX_PATH=${WORK}/prefix "-DCMAKE_CXX_FLAGS=${flags}")
    run("building ${example}" ${CMAKE_COMMAND} --build ${WORK}/${example})
endforeach()

# A build that goes by pkg-config finds the same.
set(ENV{PKG_CONFIG_PATH} ${WORK}/prefix/${LIBDIR}/pkgconfig)
run("building the host by pkg-config" sh -c
    "${COMPILER} -std=c++20 ${flags} ${SOURCE}/host/host.cpp $(pkg-config --cflags --libs daxlib) -o ${WORK}/by-pkg-config")

# A WAV file of two channels and three frames of 32-bit float, which the installed plug-in reads, and no configuration but
# that of the installation.
file(MAKE_DIRECTORY ${WORK}/home)
set(wav "\\122\\111\\106\\106\\074\\000\\000\\000WAVEfmt \\020\\000\\000\\000\\003\\000\\002\\000\\100\\037\\000\\000\\000\\372\\000\\000")
string(APPEND wav "\\010\\000\\040\\000data\\030\\000\\000\\000\\000\\000\\200\\077\\000\\000\\000\\300\\000\\000\\000\\100")
string(APPEND wav "\\000\\000\\100\\300\\000\\000\\100\\100\\000\\000\\200\\300")
execute_process(COMMAND printf ${wav} OUTPUT_FILE ${WORK}/sample.wav COMMAND_ERROR_IS_FATAL ANY)

set(host ${CMAKE_COMMAND} -E env --unset=DAX_SYS)
run("the host on a WAV file" ${host} DAX_HOME=${WORK}/home ${WORK}/host/host ${WORK}/sample.wav)
expect("Microsoft Wave time series")
expect("Channel 1 [], 3 points at 8000 a second: 1 2 3")
expect("Channel 2 [], 3 points at 8000 a second: -2 -3 -4")

# The example plug-in: DAX_HOME names the folder of its manifest.
run("the host on columns of text" ${host} DAX_HOME=${WORK}/plugin ${WORK}/host/host ${SOURCE}/plugin/sample.txtts)
expect("Columns of text")
expect("Force [kN], 3 points at 100 a second: 1.5 2.5 -3.5")
expect("Stroke [mm], 3 points at 100 a second: 10 20 30")

file(WRITE ${WORK}/bad.txtts "txtts 100\nForce\nkN\nhigh\n")
execute_process(COMMAND ${host} DAX_HOME=${WORK}/plugin ${WORK}/host/host ${WORK}/bad.txtts RESULT_VARIABLE status
                OUTPUT_VARIABLE output ERROR_VARIABLE output)
expect("Line 4 holds something that is no number.")
if(NOT status EQUAL 1)
    message(FATAL_ERROR "the host ended with ${status} instead of 1")
endif()
