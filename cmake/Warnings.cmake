# The warnings that everything of this project is compiled with.
function(zunrtcp_warnings target)
  target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wshadow -Wconversion -Wcast-align -Wcast-qual -Wundef)
  if(ZUNRTCP_WARNINGS_AS_ERRORS)
    target_compile_options(${target} PRIVATE -Werror)
  endif()
  if(CMAKE_CXX_COMPILER_ID STREQUAL GNU AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
    # It takes "text" + std::string for an overlapping copy (GCC bug 105651).
    target_compile_options(${target} PRIVATE -Wno-restrict)
  endif()
endfunction()
