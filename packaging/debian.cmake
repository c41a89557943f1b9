# Adds the files that Debian requires of every package to the folder that is about to be packaged.
set(share ${CPACK_TEMPORARY_DIRECTORY}/usr/share)
set(doc ${share}/doc/corvane)

# run COMMAND...: runs a command; packaging stops if it fails.
macro(run)
    execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output OUTPUT_STRIP_TRAILING_WHITESPACE
        COMMAND_ERROR_IS_FATAL ANY)
endmacro()

file(READ ${CPACK_CORVANE_SOURCE_DIR}/LICENSE license)
string(REGEX MATCH "Copyright \\(c\\) ([^\n]*)\n\n(.*)" license "${license}")
set(holder "${CMAKE_MATCH_1}")
string(REGEX REPLACE "\n\n" "\n.\n" license "${CMAKE_MATCH_2}")
string(STRIP "${license}" license)
string(REPLACE "\n" "\n " license "${license}")
file(WRITE ${doc}/copyright
    "Format: https://www.debian.org/doc/packaging-manuals/copyright-format/1.0/
Upstream-Name: Corvane

Files: *
Copyright: ${holder}
License: Expat
 ${license}
")

file(WRITE ${doc}/changelog "")
file(STRINGS ${CPACK_CORVANE_SOURCE_DIR}/CHANGELOG.md releases REGEX "^## .*[0-9]+-[0-9]+-[0-9]+")
foreach(release IN LISTS releases)
    string(REGEX MATCH "([0-9.]+)[^0-9]*([0-9]+-[0-9]+-[0-9]+)" release "${release}")
    set(version ${CMAKE_MATCH_1})
    run(env LC_ALL=C date --utc --rfc-email --date ${CMAKE_MATCH_2})
    file(APPEND ${doc}/changelog
        "corvane (${version}) stable; urgency=medium

  * Version ${version}.

 -- ${CPACK_PACKAGE_CONTACT}  ${output}

")
endforeach()

file(GLOB pages ${share}/man/man1/*.1)
run(gzip -9n ${doc}/changelog ${pages})
