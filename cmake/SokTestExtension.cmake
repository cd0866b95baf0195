# One test of sok_test_extension: cmake -DSOKRUN=... -DBUNDLE=... -DCOMMAND=... -DSCORE=... -DRESULT=... [-DEXPECT=...]
# [-DFRAMES=...] [-DALERT=...] [-DOPTIONS=...] -P SokTestExtension.cmake
#
# Runs the command and compares what it leaves and says with what is expected.
cmake_minimum_required(VERSION 3.22)

separate_arguments(OPTIONS UNIX_COMMAND "${OPTIONS}")
execute_process(COMMAND "${SOKRUN}" run ${COMMAND} "${SCORE}" --plugin "${BUNDLE}" -o "${RESULT}" --json ${OPTIONS}
  RESULT_VARIABLE status OUTPUT_VARIABLE report)
if(NOT status EQUAL 0)
  string(JSON error ERROR_VARIABLE none GET "${report}" files 0 error)
  message(FATAL_ERROR "sokrun ends with ${status}: ${error}")
endif()

if(DEFINED ALERT)
  string(JSON count LENGTH "${report}" files 0 alerts)
  set(alerts "")
  while(count GREATER 0)
    math(EXPR count "${count} - 1")
    string(JSON alert GET "${report}" files 0 alerts ${count})
    set(alerts "${alert}\n${alerts}")
  endwhile()
  if(NOT alerts STREQUAL "${ALERT}\n")
    message(FATAL_ERROR "The alerts shown are not those expected.\nexpected:\n${ALERT}\nshown:\n${alerts}")
  endif()
endif()

# Fails where a result is not, to the last byte, what a file has.
function(compare result expected)
  set(remedy "If the result is right:\n  cp '${result}' '${expected}'")
  if(NOT EXISTS "${expected}")
    message(FATAL_ERROR "There is no ${expected} to compare with. ${remedy}")
  endif()
  file(SHA256 "${expected}" wanted)
  file(SHA256 "${result}" got)
  if(NOT wanted STREQUAL got)
    execute_process(COMMAND diff -u -F "<measure" --label expected "${expected}" --label result "${result}"
      OUTPUT_VARIABLE difference)
    message("${difference}")
    message(FATAL_ERROR "${result} is not what ${expected} has: see above. ${remedy}")
  endif()
endfunction()

if(DEFINED EXPECT)
  compare("${RESULT}" "${EXPECT}")
endif()

if(DEFINED FRAMES)
  execute_process(COMMAND "${SOKRUN}" run ${COMMAND} "${SCORE}" --plugin "${BUNDLE}" --check --quiet --frames ${OPTIONS}
    OUTPUT_FILE "${RESULT}.frames" ERROR_QUIET)
  compare("${RESULT}.frames" "${FRAMES}")
endif()
