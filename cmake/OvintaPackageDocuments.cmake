# Run by CPack on what it is about to pack: adds what Debian wants in every package, the copyright
# and the changes, and compresses the manual page. The changes are those of CHANGELOG.md's newest
# version that has a date.
file(READ ${CMAKE_CURRENT_LIST_DIR}/../CHANGELOG.md changes)
if(NOT changes MATCHES "\n## ([0-9.]+) - ([0-9-]+)\n")
  message(FATAL_ERROR "CHANGELOG.md has no version with a date")
endif()
set(version ${CMAKE_MATCH_1})
set(day ${CMAKE_MATCH_2})
string(FIND "${changes}" "\n## ${version} - " start)
string(SUBSTRING "${changes}" ${start} -1 changes)
string(REGEX REPLACE "^\n## [^\n]*\n+" "" changes "${changes}")
string(REGEX REPLACE "\n## .*" "" changes "${changes}")
string(REGEX REPLACE "\n+$" "" changes "${changes}")
string(REPLACE "\n" "\n  " changes "\n${changes}")
string(REPLACE "\n  - " "\n  * " changes "${changes}")
execute_process(COMMAND date --utc --rfc-email --date=${day} OUTPUT_VARIABLE date
                OUTPUT_STRIP_TRAILING_WHITESPACE COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${CPACK_TEMPORARY_DIRECTORY}/changes "${changes}")
execute_process(COMMAND fmt --tagged-paragraph --width=78 ${CPACK_TEMPORARY_DIRECTORY}/changes
                OUTPUT_VARIABLE changes COMMAND_ERROR_IS_FATAL ANY)
string(STRIP "${changes}" changes)
set(changes "${CPACK_PACKAGE_NAME} (${version}) unstable; urgency=medium

  ${changes}

 -- ${CPACK_PACKAGE_CONTACT}  ${date}
")

foreach(component ${CPACK_COMPONENTS_ALL})
  string(TOUPPER ${component} key)
  set(root ${CPACK_TEMPORARY_DIRECTORY}/${component}${CPACK_INSTALL_PREFIX})
  set(documents ${root}/share/doc/${CPACK_DEBIAN_${key}_PACKAGE_NAME})
  file(WRITE ${documents}/changelog "${changes}")
  configure_file(${CMAKE_CURRENT_LIST_DIR}/../packaging/debian-copyright ${documents}/copyright
                 COPYONLY)
  file(GLOB pages ${root}/share/man/man*/*)
  execute_process(COMMAND gzip -9n ${documents}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
  execute_process(COMMAND chmod -R u=rwX,go=rX ${root} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
