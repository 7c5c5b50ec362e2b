# Run by cpack on each folder that becomes a package: takes the compilers' remarks out of the programs, which stripping leaves.
file(GLOB_RECURSE files "${CPACK_TEMPORARY_INSTALL_DIRECTORY}/*")
foreach(file IN LISTS files)
  file(READ "${file}" magic LIMIT 4 HEX)
  if(magic STREQUAL "7f454c46" AND NOT IS_SYMLINK "${file}")
    execute_process(COMMAND strip --remove-section=.comment "${file}" COMMAND_ERROR_IS_FATAL ANY)
  endif()
endforeach()
