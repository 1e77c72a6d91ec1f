# Proves that check_layers.cmake catches what it is for: one forbidden include at a time in a tree of
# its own, and some that are allowed.
#   cmake -DSCRIPT=check_layers.cmake -DFOLDER=scratch -P check_layers_trap.cmake
cmake_minimum_required(VERSION 3.22)

function(try file include wanted)
  file(REMOVE_RECURSE ${FOLDER})
  file(MAKE_DIRECTORY ${FOLDER}/src/fit)
  file(WRITE ${FOLDER}/${file} "#include ${include}\n")
  execute_process(COMMAND ${CMAKE_COMMAND} -DSOURCE_DIR=${FOLDER} -P ${SCRIPT}
    RESULT_VARIABLE status OUTPUT_QUIET ERROR_QUIET)
  if(wanted STREQUAL "caught" AND status EQUAL 0)
    message(SEND_ERROR "not caught: ${include} in ${file}")
  elseif(wanted STREQUAL "allowed" AND NOT status EQUAL 0)
    message(SEND_ERROR "not allowed: ${include} in ${file}")
  endif()
endfunction()

try(src/scan/a.h "\"fit/b.h\"" caught)
try(src/stats/a.cpp "\"sim/b.h\"" caught)
try(src/base/deep/a.cpp "<QString>" caught)
try(src/core/settings/a.h "\"core/page/b.h\"" caught)
try(src/core/page/a.h "\"core/fit_run.h\"" caught)
try(src/core/page/a.h "\"core/program_state.h\"" allowed)
try(src/core/fit_run.cpp "\"core/page/b.h\"" allowed)
try(src/windows/log/a.h "\"windows/print/b.h\"" caught)
try(src/windows/page/a.cpp "\"windows/errors/b.h\"" caught)
try(src/windows/frame/a.cpp "\"windows/controls/b.h\"" allowed)
try(tests/scan/a_test.cpp "\"fit/b.h\"" caught)
file(REMOVE_RECURSE ${FOLDER})
