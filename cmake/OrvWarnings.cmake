# Warnings are errors on every target of the project, with both compilers.
function(orv_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
    # g++ 12 at -O2 and above reports std::string concatenation as overlapping memcpy
    # (-Wrestrict, GCC bug 105329): a false positive in the standard library's headers.
    if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU" AND CMAKE_CXX_COMPILER_VERSION VERSION_LESS 13)
        target_compile_options(${target} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-Wno-restrict>)
    endif()
endfunction()
