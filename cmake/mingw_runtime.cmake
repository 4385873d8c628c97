# The library and its host programs share one C++ run-time, as they hand each other objects and exceptions: its DLLs go
# beside them.
if(CMAKE_SIZEOF_VOID_P EQUAL 8)
  set(unwinder libgcc_s_seh-1.dll)
else()
  set(unwinder libgcc_s_dw2-1.dll)
endif()
foreach(name libstdc++-6.dll ${unwinder} libwinpthread-1.dll)
  execute_process(COMMAND ${CMAKE_CXX_COMPILER} -print-file-name=${name} OUTPUT_VARIABLE path
                  OUTPUT_STRIP_TRAILING_WHITESPACE)
  if(NOT IS_ABSOLUTE "${path}")
    message(FATAL_ERROR "the compiler does not tell where ${name} is")
  endif()
  # Nine tenths of them are information for debuggers.
  execute_process(COMMAND ${CMAKE_STRIP} --strip-unneeded -o ${PROJECT_BINARY_DIR}/${name} ${path} COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${PROJECT_BINARY_DIR}/${name} DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT library)
endforeach()
