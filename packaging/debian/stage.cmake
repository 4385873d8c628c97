# Adds to each staged package what Debian's rules ask for: the changes, the copyright, and pages that are compressed.
if(NOT CPACK_GENERATOR STREQUAL "DEB")
  return()
endif()
set(source ${CPACK_QVTOOLS_SOURCE})

set(changes "qvtools (${CPACK_PACKAGE_VERSION}) unstable; urgency=medium

  * CHANGELOG.md of the package qvtools-doc tells what is new.

 -- ${CPACK_PACKAGE_CONTACT}  ${CPACK_QVTOOLS_DATE}
")
foreach(component ${CPACK_COMPONENTS_ALL})
  set(root ${CPACK_TEMPORARY_INSTALL_DIRECTORY}/${component}/usr)
  string(TOUPPER ${component} name)
  set(folder ${root}/share/doc/${CPACK_DEBIAN_${name}_PACKAGE_NAME})
  file(COPY ${source}/packaging/debian/copyright DESTINATION ${folder})
  file(WRITE ${folder}/changelog "${changes}")
  file(GLOB pages ${root}/share/man/man*/*)
  execute_process(COMMAND gzip -9nf ${folder}/changelog ${pages} COMMAND_ERROR_IS_FATAL ANY)
endforeach()
