# What Debian wants beyond the install rules of the Python module; see ../stage.cmake.
set(doc ${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/python3-quorvane)
file(MAKE_DIRECTORY ${doc})
file(COPY ${CMAKE_CURRENT_LIST_DIR}/../changelog DESTINATION ${doc})
file(READ ${CMAKE_CURRENT_LIST_DIR}/../copyright copyright)
string(REPLACE "usr/bin/quorvane-cli" "usr/lib/python3/*" copyright "${copyright}")
string(REPLACE "2017-2020 University of Cincinnati, developed by Henry Schreiner under NSF AWARD 1414736"
  "2016 Wenzel Jakob <wenzel.jakob@epfl.ch>" copyright "${copyright}")
string(REPLACE "CLI11" "pybind11" copyright "${copyright}")
string(REPLACE "The programs hold" "The module holds" copyright "${copyright}")
string(REGEX REPLACE "Files: usr/share/metainfo[^\n]*\n[^\n]*\n[^\n]*\n\n" "" copyright "${copyright}")
file(WRITE ${doc}/copyright "${copyright}")
include(${CMAKE_CURRENT_LIST_DIR}/../finish.cmake)
