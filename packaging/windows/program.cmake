# quorvane_windows_program(NAME DESCRIPTION): icon, manifest and version for a program on Windows;
# does nothing for other systems.
if(WIN32 AND NOT MSVC)
  enable_language(RC)
endif()

function(quorvane_windows_program program description)
  if(NOT WIN32 OR MSVC)
    return()
  endif()
  set(file ${CMAKE_CURRENT_BINARY_DIR}/${program}.rc)
  configure_file(${CMAKE_SOURCE_DIR}/packaging/windows/program.rc.in ${file} @ONLY)
  target_sources(${program} PRIVATE ${file})
  set_source_files_properties(${file} PROPERTIES OBJECT_DEPENDS
    "${CMAKE_SOURCE_DIR}/packaging/windows/quorvane.manifest;${CMAKE_SOURCE_DIR}/packaging/icons/quorvane.ico")
endfunction()
