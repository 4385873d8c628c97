# A zip and an installer: all for 64 bits, and the library for 32 bits below x86, from a build tree of its own.
set(CPACK_GENERATOR ZIP NSIS64)
set(CPACK_MONOLITHIC_INSTALL ON)
set(CPACK_SYSTEM_NAME windows)
set(CPACK_PACKAGE_INSTALL_DIRECTORY QVTOOLS)
set(CPACK_INSTALL_CMAKE_PROJECTS ${PROJECT_BINARY_DIR} qvtools ALL /)
set(x86 ${PROJECT_SOURCE_DIR}/build-windows32)
foreach(component library development)
  list(APPEND CPACK_INSTALL_CMAKE_PROJECTS ${x86} qvtools ${component} /x86)
endforeach()

set(CPACK_NSIS_DISPLAY_NAME "QVTOOLS ${PROJECT_VERSION}")
set(CPACK_NSIS_PACKAGE_NAME QVTOOLS)
set(CPACK_NSIS_MUI_ICON ${CMAKE_CURRENT_SOURCE_DIR}/windows/qvview.ico)
set(CPACK_NSIS_MUI_UNIICON ${CMAKE_CURRENT_SOURCE_DIR}/windows/qvview.ico)
set(CPACK_NSIS_INSTALLED_ICON_NAME bin/qvview32.exe)
set(CPACK_NSIS_ENABLE_UNINSTALL_BEFORE_INSTALL ON)
set(CPACK_NSIS_EXECUTABLE_PRE_ARGUMENTS [[XTarget\ amd64-unicode]])  # the installer itself is of 64 bits, too
set(CPACK_NSIS_MODIFY_PATH ON)
set(CPACK_PACKAGE_EXECUTABLES qvview32 "QVTOOLS viewer")
set(CPACK_NSIS_MENU_LINKS share/doc/qvtools "QVTOOLS manual")
# The viewer opens drawings: always when it is chosen, and where no program does so yet, by itself.
set(CPACK_NSIS_EXTRA_INSTALL_COMMANDS [[
  WriteRegStr SHCTX "Software\Classes\QVTOOLS.dxf" "" "DXF drawing"
  WriteRegStr SHCTX "Software\Classes\QVTOOLS.dxf\DefaultIcon" "" "$INSTDIR\bin\qvview32.exe,0"
  WriteRegStr SHCTX "Software\Classes\QVTOOLS.dxf\shell\open\command" "" '"$INSTDIR\bin\qvview32.exe" "%1"'
  WriteRegStr SHCTX "Software\Classes\.dxf\OpenWithProgids" "QVTOOLS.dxf" ""
  ReadRegStr $0 SHCTX "Software\Classes\.dxf" ""
  StrCmp $0 "" 0 +2
  WriteRegStr SHCTX "Software\Classes\.dxf" "" "QVTOOLS.dxf"
  System::Call 'Shell32::SHChangeNotify(i 0x8000000, i 0, i 0, i 0)'
]])
set(CPACK_NSIS_EXTRA_UNINSTALL_COMMANDS [[
  DeleteRegKey SHCTX "Software\Classes\QVTOOLS.dxf"
  DeleteRegValue SHCTX "Software\Classes\.dxf\OpenWithProgids" "QVTOOLS.dxf"
  DeleteRegKey /ifempty SHCTX "Software\Classes\.dxf\OpenWithProgids"
  ReadRegStr $0 SHCTX "Software\Classes\.dxf" ""
  StrCmp $0 "QVTOOLS.dxf" 0 +2
  DeleteRegValue SHCTX "Software\Classes\.dxf" ""
  DeleteRegKey /ifempty SHCTX "Software\Classes\.dxf"
  System::Call 'Shell32::SHChangeNotify(i 0x8000000, i 0, i 0, i 0)'
]])
