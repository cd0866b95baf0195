# One test of sok_test_extension: cmake -DSOKRUN=... -DBUNDLE=... -DCOMMAND=... -DSCORE=... -DRESULT=... [-DEXPECT=...]
# [-DALERT=...] [-DOPTIONS=...] -P SokTestExtension.cmake
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

if(DEFINED EXPECT)
  if(NOT EXISTS "${EXPECT}")
    message(FATAL_ERROR "There is no ${EXPECT} to compare with. If the result is what it should be:\n"
      "  cp '${RESULT}' '${EXPECT}'")
  endif()
  file(SHA256 "${EXPECT}" expected)
  file(SHA256 "${RESULT}" result)
  if(NOT expected STREQUAL result)
    execute_process(COMMAND diff -u -F "<measure" --label expected "${EXPECT}" --label result "${RESULT}"
      OUTPUT_VARIABLE difference)
    message("${difference}")
    message(FATAL_ERROR "${RESULT} is not what ${EXPECT} has: see above. If the result is right:\n"
      "  cp '${RESULT}' '${EXPECT}'")
  endif()
endif()
