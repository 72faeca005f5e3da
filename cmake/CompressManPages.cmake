# For CPack, once the files of all packages lie in their folders: Debian wants man pages compressed, without a time.
file(GLOB_RECURSE pages "${CPACK_TEMPORARY_DIRECTORY}/orvelprc.1")
foreach(page IN LISTS pages)
    execute_process(COMMAND gzip -9n "${page}" COMMAND_ERROR_IS_FATAL ANY)
endforeach()
