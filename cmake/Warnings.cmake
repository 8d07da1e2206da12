# The warnings every target of the project is built with; errors where TESSARO_WERROR is on.
add_library(tessaro_warnings INTERFACE)
target_compile_options(tessaro_warnings INTERFACE -Wall -Wextra -Wconversion -Wshadow
                                                  $<$<BOOL:${TESSARO_WERROR}>:-Werror>)
