# Warnings are errors on every target of the project, with both compilers.
function(orv_set_warnings target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Werror)
endfunction()
