# The end of the staging of a package: texts compressed, one time for all.
file(GLOB texts ${CPACK_TEMPORARY_DIRECTORY}/usr/share/man/man1/*.1
  ${CPACK_TEMPORARY_DIRECTORY}/usr/share/doc/*/changelog)
execute_process(COMMAND gzip -9nf ${texts} COMMAND_ERROR_IS_FATAL ANY)
# Checked-out files have the times of the check-out; one time for all makes equal packages.
execute_process(COMMAND sh -c
  "find '${CPACK_TEMPORARY_DIRECTORY}' -exec touch -h -d \"@\${SOURCE_DATE_EPOCH:-$(date +%s)}\" {} +"
  COMMAND_ERROR_IS_FATAL ANY)
