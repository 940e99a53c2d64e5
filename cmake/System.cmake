# What differs from system to system lies in folders that are named after the system and
# list their own sources: another one is added by adding such folders.
string(TOLOWER "${CMAKE_SYSTEM_NAME}" BRISALON_SYSTEM)
if(NOT EXISTS ${PROJECT_SOURCE_DIR}/BrisalonCore/src/host/${BRISALON_SYSTEM})
    message(FATAL_ERROR
        "Brisalon knows no system called ${CMAKE_SYSTEM_NAME}: there is no folder "
        "BrisalonCore/src/host/${BRISALON_SYSTEM}.")
endif()
