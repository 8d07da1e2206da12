# The warnings every target of the project is built with; errors where TESSARO_WERROR is on.
add_library(tessaro_warnings INTERFACE)
target_compile_features(tessaro_warnings INTERFACE cxx_std_20)
target_compile_options(tessaro_warnings INTERFACE -Wall -Wextra -Wconversion -Wshadow
                                                  $<$<BOOL:${TESSARO_WERROR}>:-Werror>)
# When it optimises, gcc 12 sees overflows in the growth of a vector or a string that cannot happen.
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(tessaro_warnings INTERFACE -Wno-stringop-overflow
                           -Wno-stringop-overread -Wno-restrict
                           $<$<NOT:$<CONFIG:Debug>>:-Wno-array-bounds>)
endif()
