# quillo_commit(OUT): the commit of these sources in 12 digits: from the file COMMIT, which a source package has, or from
# their own repository; else "commit unknown". A repository that they merely lie in is somebody else's.
function(quillo_commit out)
  set(commit "")
  set(${out} "commit unknown" PARENT_SCOPE)
  if(EXISTS ${CMAKE_SOURCE_DIR}/COMMIT)
    file(READ ${CMAKE_SOURCE_DIR}/COMMIT commit)
  elseif(EXISTS ${CMAKE_SOURCE_DIR}/.git)
    execute_process(COMMAND git -C ${CMAKE_SOURCE_DIR} rev-parse HEAD
                    OUTPUT_VARIABLE commit ERROR_QUIET RESULT_VARIABLE ignored)
  endif()
  string(SUBSTRING "${commit}" 0 12 commit)
  if(commit MATCHES "^[0-9a-f]+$")
    set(${out} ${commit} PARENT_SCOPE)
  endif()
endfunction()
