# The Debian package; `cpack` in the build folder makes it, `./package` all at once.
set(QUORVANE_CONTACT "Quorvane developers <developers@quorvane.invalid>" CACHE STRING
  "Maintainer of packages, with the address")

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME quorvane)
set(CPACK_PACKAGE_CONTACT "${QUORVANE_CONTACT}")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${CMAKE_BINARY_DIR}/package)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_STRIP_FILES ON)
set(CPACK_PRE_BUILD_SCRIPTS ${CMAKE_CURRENT_LIST_DIR}/stage.cmake)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS ${CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS})

set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SECTION science)
set(CPACK_DEBIAN_PACKAGE_RECOMMENDS fonts-liberation)
set(CPACK_DEBIAN_PACKAGE_DESCRIPTION
"analysis of sedimentation-equilibrium experiments
Quorvane analyses sedimentation-equilibrium experiments of an analytical
ultracentrifuge. It loads radial scans, subtracts blanks, leaves out bad
points, and fits any set of scans at once to one of eleven association
models by Levenberg-Marquardt least squares, with confidence intervals and
cross-correlation coefficients of the parameters.
.
A simulator makes synthetic scans of the same models, and successive scans
of a run can be compared to see whether equilibrium has been reached. A whole
experiment is kept in one file.
.
The package holds the window program quorvane and the command line
quorvane-cli, which repeats and scripts analyses.")
# What the rules of the Python module install is a package of its own.
set(CPACK_INSTALL_CMAKE_PROJECTS "${CMAKE_BINARY_DIR};${PROJECT_NAME};Unspecified;/")
include(CPack)
if(QUORVANE_PYTHON)
  math(EXPR next "${Python3_VERSION_MINOR} + 1")
  configure_file(${CMAKE_CURRENT_LIST_DIR}/python/package.cmake.in
    ${CMAKE_BINARY_DIR}/CPackPythonConfig.cmake @ONLY)
endif()
