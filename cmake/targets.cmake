# What every target of ours is built with: warnings, which are errors but in the tree of another program, hidden symbols, and
# arithmetic that gives the same bits on every system (no contraction of a*b+c, SSE2 rather than x87 on 32-bit x86).
function(qvtools_target target)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/src)
  set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden VISIBILITY_INLINES_HIDDEN ON)
  target_compile_definitions(${target} PRIVATE QV_CHECK_FORMATS)
  set(errors)
  if(PROJECT_IS_TOP_LEVEL)
    set(errors -Werror)
  endif()
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wformat-security -Wconversion -Wshadow ${errors}
                                           -ffp-contract=off)
  # One compiler counts changes of sign among conversions, the other does not.
  target_compile_options(${target} PRIVATE -Wno-sign-conversion)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Exported functions are the library's own for its own calls, so that they can be inlined.
    target_compile_options(${target} PRIVATE -fno-semantic-interposition)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # GCC 12 sees overlaps in the joining of texts that are not there.
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    target_compile_options(${target} PRIVATE -msse2 -mfpmath=sse)
  endif()
  if(QVTOOLS_SANITIZE)
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
      # The sanitizers' checks make the compiler see uninitialised values in the standard library's own headers.
      target_compile_options(${target} PRIVATE -Wno-maybe-uninitialized)
    endif()
    target_compile_options(${target} PRIVATE -fsanitize=${QVTOOLS_SANITIZE} -fno-sanitize-recover=all
                                             -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${QVTOOLS_SANITIZE})
  endif()
endfunction()

# The headers of the standard library, read once for all targets that ask for it (see src/CMakeLists.txt) instead of once for
# each source: a third of the time that compilation takes. A build without (CMAKE_DISABLE_PRECOMPILE_HEADERS), as the
# installation test makes one, finds sources that do not include what they use.
function(qvtools_precompile target)
  target_precompile_headers(${target} REUSE_FROM qvtools_standard_headers)
  qvtools_precompiled(${target})
endfunction()

# What a target is compiled with that reads precompiled headers.
function(qvtools_precompiled target)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # Headers that were read beforehand are no system headers to GCC: it warns of overruns in texts that are not there.
    target_compile_options(${target} PRIVATE -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
  endif()
endfunction()

# The presets join sources, so that headers are read once for several (CMAKE_UNITY_BUILD). These sources of the target use
# names of their own that a neighbour uses too. Their paths are relative to the folder that calls.
function(qvtools_compile_alone target)
  foreach(source ${ARGN})
    set_source_files_properties(${CMAKE_CURRENT_SOURCE_DIR}/${source} TARGET_DIRECTORY ${target}
                                PROPERTIES SKIP_UNITY_BUILD_INCLUSION ON)
  endforeach()
endfunction()
