# Installs the build tree BUILD into SCRATCH and builds and runs the consumer project against it,
# with the compiler, the flags and the toolchain of that tree.
function(run)
    execute_process(COMMAND ${ARGV} COMMAND_ECHO STDOUT COMMAND_ERROR_IS_FATAL ANY)
endfunction()

file(REMOVE_RECURSE ${SCRATCH})
run(${CMAKE_COMMAND} --install ${BUILD} --config ${CONFIG} --component library
    --prefix ${SCRATCH}/prefix)

load_cache(${BUILD} READ_WITH_PREFIX OUTER_ CMAKE_CXX_COMPILER CMAKE_CXX_FLAGS
           CMAKE_TOOLCHAIN_FILE CMAKE_BUILD_TYPE)
if(OUTER_CMAKE_TOOLCHAIN_FILE)
    set(tools -D CMAKE_TOOLCHAIN_FILE=${OUTER_CMAKE_TOOLCHAIN_FILE})
else()
    set(tools -D CMAKE_CXX_COMPILER=${OUTER_CMAKE_CXX_COMPILER})
endif()
run(${CMAKE_COMMAND} -S ${CMAKE_CURRENT_LIST_DIR} -B ${SCRATCH}/build -G ${GENERATOR} ${tools}
    -D CMAKE_CXX_FLAGS=${OUTER_CMAKE_CXX_FLAGS} -D CMAKE_BUILD_TYPE=${CONFIG}
    -D Tessaro_ROOT=${SCRATCH}/prefix -D CMAKE_FIND_ROOT_PATH=${SCRATCH}/prefix
    -D TESSARO_EXPECTED=${VERSION})
run(${CMAKE_COMMAND} --build ${SCRATCH}/build --config ${CONFIG})
run(${CMAKE_CTEST_COMMAND} --test-dir ${SCRATCH}/build -C ${CONFIG} --output-on-failure
    --no-tests=error)
