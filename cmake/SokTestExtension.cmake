# One test of sok_test_extension: cmake -DSOKRUN=... -DBUNDLE=... -DCOMMAND=... -DSCORE=... -DRESULT=... [-DEXPECT=...]
# [-DFRAMES=...] [-DALERT=...] [-DOPTIONS=...] -P SokTestExtension.cmake
#
# Runs the command and compares what it leaves and says with what is expected. Where the environment has SOK_ACCEPT, the
# files of what is expected become what comes out.
cmake_minimum_required(VERSION 3.22)

separate_arguments(OPTIONS UNIX_COMMAND "${OPTIONS}")
set(run "${SOKRUN}" run ${COMMAND} "${SCORE}" --plugin "${BUNDLE}" ${OPTIONS})
execute_process(COMMAND ${run} -o "${RESULT}" --json RESULT_VARIABLE status OUTPUT_VARIABLE report)
if(NOT status EQUAL 0)
  string(JSON error ERROR_VARIABLE none GET "${report}" files 0 error)
  message("sokrun: ${error}")
  message(FATAL_ERROR "sokrun ends with ${status}.")
endif()

# Fails where a result is not, to the last byte, what a file has. `remedy`, in words, makes it the expected one.
function(compare what result expected remedy)
  if(EXISTS "${expected}")
    file(SHA256 "${expected}" wanted)
    file(SHA256 "${result}" got)
    if(wanted STREQUAL got)
      return()
    endif()
    execute_process(COMMAND diff -u -F "<measure" --label expected "${expected}" --label result "${result}"
      OUTPUT_VARIABLE difference)
    message("${difference}")
  else()
    message("There is no ${expected}.")
  endif()
  message("If the result is right: ${remedy}\n")
  message(FATAL_ERROR "${what} not what is expected.")
endfunction()

# The same with a file that can be accepted.
function(compare_file what result expected)
  if(DEFINED ENV{SOK_ACCEPT})
    get_filename_component(folder "${expected}" DIRECTORY)
    file(MAKE_DIRECTORY "${folder}")
    file(COPY_FILE "${result}" "${expected}")
  endif()
  compare("${what}" "${result}" "${expected}" "SOK_ACCEPT=1 ctest … (then look at it), or\n  cp '${result}' '${expected}'")
endfunction()

if(DEFINED ALERT)
  string(JSON count LENGTH "${report}" files 0 alerts)
  set(alerts "")
  while(count GREATER 0)
    math(EXPR count "${count} - 1")
    string(JSON alert GET "${report}" files 0 alerts ${count})
    set(alerts "${alert}\n${alerts}")
  endwhile()
  string(REGEX REPLACE "\n+$" "" alerts "${alerts}")
  string(REGEX REPLACE "\n+$" "" wanted "${ALERT}")
  file(WRITE "${RESULT}.alerts" "${alerts}\n")
  file(WRITE "${RESULT}.expected_alerts" "${wanted}\n")
  compare("The alerts are" "${RESULT}.alerts" "${RESULT}.expected_alerts" "give sok_test_extension the text as ALERT")
endif()

if(DEFINED EXPECT)
  compare_file("The score that comes out is" "${RESULT}" "${EXPECT}")
endif()

if(DEFINED FRAMES)
  execute_process(COMMAND ${run} --check --quiet --frames OUTPUT_FILE "${RESULT}.frames" ERROR_QUIET)
  compare_file("What the entries are is" "${RESULT}.frames" "${FRAMES}")
endif()
