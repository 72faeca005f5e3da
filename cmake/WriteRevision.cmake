# cmake -D SOURCE=... -D OUTPUT=... -P WriteRevision.cmake: writes a header with the revision of the sources, followed by
# + when they were changed since, and empty when they stand in no git tree of their own. An unchanged header is left as
# it is, so that nothing is built again.

cmake_minimum_required(VERSION 3.25)

# A git that does not know the tree, or does not trust it, fails; its complaint is of no interest.
function(ask_git result)
    execute_process(COMMAND git --no-optional-locks -C "${SOURCE}" ${ARGN}
        OUTPUT_VARIABLE answer RESULT_VARIABLE failed ERROR_QUIET OUTPUT_STRIP_TRAILING_WHITESPACE)
    if(failed)
        set(answer "")
    endif()
    set(${result} "${answer}" PARENT_SCOPE)
endfunction()

set(revision "")
ask_git(top rev-parse --show-toplevel)
file(REAL_PATH "${SOURCE}" source)
# The sources may have been unpacked inside another project's tree, whose revision says nothing about them.
if(top STREQUAL source)
    ask_git(revision rev-parse --short=12 HEAD)
    ask_git(changes status --porcelain --untracked-files=no)
    if(revision AND changes)
        string(APPEND revision "+")
    endif()
endif()
file(CONFIGURE OUTPUT "${OUTPUT}" CONTENT "#define ORVEL_REVISION \"@revision@\"\n" @ONLY)
