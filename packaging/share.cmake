# Installs the files that make Corvane known to desktops into a data folder, or removes them.
#
# usage: cmake -D DATA=<such as /usr/share> -D BIN=<the folder of the programs> -P share.cmake
#        cmake -D DATA=<the same> -D REMOVE=ON -P share.cmake

set(files
    applications/org.corvane.Corvane.desktop
    applications/org.corvane.Corvane.Shortcuts.desktop
    dbus-1/services/org.corvane.Corvane.service
    icons/hicolor/22x22/apps/org.corvane.Corvane-paused-symbolic.svg
    icons/hicolor/22x22/apps/org.corvane.Corvane-symbolic.svg
    icons/hicolor/scalable/apps/org.corvane.Corvane.svg
    icons/hicolor/symbolic/apps/org.corvane.Corvane-paused-symbolic.svg
    icons/hicolor/symbolic/apps/org.corvane.Corvane-symbolic.svg
    metainfo/org.corvane.Corvane.metainfo.xml
)

# Escapes backslashes, as in every string value of such files.
function(set_escaped variable text)
    string(REPLACE "\\" "\\\\" text "${text}")
    set(${variable} "${text}" PARENT_SCOPE)
endfunction()

# Quotes the program as the first word of an Exec line.
function(set_exec variable program)
    if(program MATCHES "[^A-Za-z0-9/._+-]")
        string(REGEX REPLACE "([\"`$\\\\])" "\\\\\\1" program "${program}")
        string(REPLACE "%" "%%" program "${program}")
        set_escaped(program "\"${program}\"")
        # GIO looks up the first word literally, with its %% unexpanded.
        if(program MATCHES "%")
            string(PREPEND program "env ")
        endif()
    endif()
    set(${variable} "${program}" PARENT_SCOPE)
endfunction()

# Quotes the program as a shell word, as in the Exec lines of service files.
function(set_service variable program)
    if(program MATCHES "[^A-Za-z0-9/._+-]")
        string(REPLACE "'" "'\"'\"'" program "${program}")
        set_escaped(program "'${program}'")
    endif()
    set(${variable} "${program}" PARENT_SCOPE)
endfunction()

if(BIN STREQUAL "/usr/bin")
    # Every PATH contains it.
    set(folder "")
else()
    set(folder "${BIN}/")
endif()
# KWin compares the path in Exec with that of the running program before it gives the program what its
# desktop file asks for.
set_exec(EXEC_CORVANE "${BIN}/corvane")
set_exec(EXEC_SHORTCUTS "${folder}corvane-shortcuts")
set_escaped(TRY_CORVANE "${folder}corvane")
set_escaped(TRY_SHORTCUTS "${folder}corvane-shortcuts")
# D-Bus does not search PATH.
set_service(SERVICE_CORVANE "${BIN}/corvane")

foreach(file IN LISTS files)
    set(template "${CMAKE_CURRENT_LIST_DIR}/share/${file}")
    if(REMOVE)
        if(EXISTS "${DATA}/${file}")
            file(REMOVE "${DATA}/${file}")
            message(STATUS "Removed ${DATA}/${file}")
        endif()
    elseif(EXISTS "${template}")
        configure_file("${template}" "${DATA}/${file}" COPYONLY NO_SOURCE_PERMISSIONS)
    else()
        configure_file("${template}.in" "${DATA}/${file}" @ONLY NO_SOURCE_PERMISSIONS)
    endif()
endforeach()
