# What every target of this project shares: warnings, sanitizers, the include root.

function(sok_target_defaults target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wconversion)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    target_compile_options(${target} PRIVATE -Wno-restrict)  # wrong about joined strings when optimising
  endif()
  if(PROJECT_IS_TOP_LEVEL AND SOK_WERROR)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(SOK_SANITIZE)
    target_compile_options(${target} PRIVATE -fsanitize=${SOK_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(${target} PRIVATE -fsanitize=${SOK_SANITIZE})
  endif()
endfunction()

option(SOK_WERROR "Treat warnings as errors" ${sok_is_main})
