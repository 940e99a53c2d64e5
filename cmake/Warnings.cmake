# The warnings that all of this project's code compiles without. Whether they are
# errors is the preset's choice (CMAKE_COMPILE_WARNING_AS_ERROR), so that a newer
# compiler never breaks a user's build.
add_compile_options(
    -Wall
    -Wextra
    -Wpedantic
    -Wshadow
    -Wconversion
    -Wsign-conversion
    -Wold-style-cast
    -Wnon-virtual-dtor
    -Woverloaded-virtual
    -Wextra-semi
    -Wformat=2
    -Wundef
    -Wimplicit-fallthrough
)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    add_compile_options(
        -Wduplicated-cond
        -Wduplicated-branches
        -Wlogical-op
        -Wsuggest-override
    )
endif()
