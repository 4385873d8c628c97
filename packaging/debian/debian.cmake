# Packages for Debian and its kin, one for each component.
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL library development programs fonts documentation)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_COMPRESSION_TYPE xz)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# A program takes the library of this build for its dependencies, which is in no package yet.
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS ${PROJECT_BINARY_DIR})
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)

# qvtools_debian(COMPONENT PACKAGE SECTION ARCHITECTURE DESCRIPTION): the description's first line is the summary.
function(qvtools_debian component package section architecture description)
  string(TOUPPER ${component} name)
  set(CPACK_DEBIAN_${name}_PACKAGE_NAME ${package} PARENT_SCOPE)
  set(CPACK_DEBIAN_${name}_PACKAGE_SECTION ${section} PARENT_SCOPE)
  if(architecture STREQUAL "all")
    set(CPACK_DEBIAN_${name}_PACKAGE_ARCHITECTURE all PARENT_SCOPE)
  endif()
  set(CPACK_DEBIAN_${name}_DESCRIPTION "${description}" PARENT_SCOPE)
endfunction()

set(about "\nQVTOOLS composes, reads, converts, measures, compares and plots construction drawings in DXF, for \
structural-engineering programs.")
set(library libqvtools${PROJECT_VERSION_MAJOR})
set(same "(= ${PROJECT_VERSION})")
qvtools_debian(library ${library} libs any "toolkit for construction drawings: shared library${about}")
set(CPACK_DEBIAN_LIBRARY_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_LIBRARY_PACKAGE_CONTROL_EXTRA ${CMAKE_CURRENT_SOURCE_DIR}/debian/triggers)

qvtools_debian(fonts qvtools-fonts fonts all
  "shape fonts for construction drawings${about}\nThe text font of ASCII and structural signs, and the Chinese font.")

qvtools_debian(programs qvtools graphics any
  "viewer, plotter and converter of construction drawings${about}\nqvview shows drawings in a window; qvdraw does its \
work from the command line; shpc compiles shape fonts.")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_DEPENDS "${library} ${same}, qvtools-fonts ${same}")
# The window's captions, its style, and the registry of types.
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_RECOMMENDS
    "fonts-wqy-microhei | fonts-noto-cjk, qt6-translations-l10n, shared-mime-info, desktop-file-utils")
set(CPACK_DEBIAN_PROGRAMS_PACKAGE_SUGGESTS qvtools-doc)

qvtools_debian(development libqvtools-dev libdevel any
  "toolkit for construction drawings: headers and examples${about}\nWith the libraries of plots, of Qt device contexts \
and of the viewer as a widget.")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${library} ${same}, qvtools-fonts ${same}, zlib1g-dev")
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SUGGESTS "qvtools-doc, qt6-base-dev, libqt6svg6-dev | qt6-svg-dev")

qvtools_debian(documentation qvtools-doc doc all "toolkit for construction drawings: manual${about}")

# What each package has to hold by Debian's rules is added to what is staged.
string(TIMESTAMP CPACK_QVTOOLS_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
set(CPACK_QVTOOLS_SOURCE ${PROJECT_SOURCE_DIR})
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_SOURCE_DIR}/debian/stage.cmake)
