# The C++ that Qt's QML compiler writes does not pass this project's warnings, and
# nobody here can mend it: it is compiled without any. Call once, after every
# target exists.
function(brisalon_silence_generated_sources directory)
    get_property(children DIRECTORY "${directory}" PROPERTY SUBDIRECTORIES)
    foreach(child IN LISTS children)
        brisalon_silence_generated_sources("${child}")
    endforeach()

    get_property(targets DIRECTORY "${directory}" PROPERTY BUILDSYSTEM_TARGETS)
    foreach(target IN LISTS targets)
        get_target_property(sources ${target} SOURCES)
        if(sources)
            list(FILTER sources INCLUDE REGEX "/qmlcache/.*\\.cpp$")
            set_source_files_properties(${sources} TARGET_DIRECTORY ${target}
                                        PROPERTIES COMPILE_OPTIONS -w)
        endif()
    endforeach()
endfunction()
