# Installs the build tree BUILD into SCRATCH, builds the consumer project and the C++ example against
# it, with the compiler, the flags and the toolchain of that tree, and runs them; the example on the
# game that COMMAND makes.
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
# build(SOURCE FOLDER [ARGUMENT...])
function(build source folder)
    run(${CMAKE_COMMAND} -S ${source} -B ${SCRATCH}/${folder} -G ${GENERATOR} ${tools}
        -D CMAKE_CXX_FLAGS=${OUTER_CMAKE_CXX_FLAGS} -D CMAKE_BUILD_TYPE=${CONFIG}
        -D Tessaro_ROOT=${SCRATCH}/prefix -D CMAKE_FIND_ROOT_PATH=${SCRATCH}/prefix ${ARGN})
    run(${CMAKE_COMMAND} --build ${SCRATCH}/${folder} --config ${CONFIG})
endfunction()

build(${CMAKE_CURRENT_LIST_DIR} build -D TESSARO_EXPECTED=${VERSION})
run(${CMAKE_CTEST_COMMAND} --test-dir ${SCRATCH}/build -C ${CONFIG} --output-on-failure
    --no-tests=error)
build(${CMAKE_CURRENT_LIST_DIR}/../../examples/cpp example)
if(COMMAND)
    run(${COMMAND} sample ${SCRATCH}/game)
    run(${SCRATCH}/example/edit_game ${SCRATCH}/game)
    run(${SCRATCH}/example/game_in_memory ${SCRATCH}/game)
endif()
