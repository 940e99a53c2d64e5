# What Debian hardens its programs with (dpkg-buildflags, hardening=+all, of Debian 13):
# an overflow in this program or in what it is fed ends it instead of taking it over.
# The sanitizers find the same and more, and do not go together with it.
option(BRISALON_HARDENING "Harden everything that is built, as Debian does" ON)
if(NOT BRISALON_HARDENING)
    return()
endif()

include(CheckCXXCompilerFlag)
include(CheckPIESupported)
check_pie_supported(LANGUAGES CXX)

add_compile_options(
    -fstack-protector-strong
    -Werror=format-security
    # Debian's level 2 checks the sizes that are known when compiling, of which there
    # are none here that could be overrun; level 3 those known at run time too. Needs an
    # optimiser; some distributions define a level themselves.
    "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=3>"
)
# Those that not every compiler has for every processor; one that only says that it does
# nothing with a flag has not.
set(CMAKE_REQUIRED_FLAGS -Werror)
foreach(flag -fstack-clash-protection -fcf-protection -mbranch-protection=standard)
    string(MAKE_C_IDENTIFIER "BRISALON_HAS${flag}" known)
    check_cxx_compiler_flag(${flag} ${known})
    if(${known})
        add_compile_options(${flag})
    endif()
endforeach()
unset(CMAKE_REQUIRED_FLAGS)
add_link_options(-Wl,-z,relro -Wl,-z,now)
