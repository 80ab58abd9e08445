# Checks that the library needs no C++ runtime and exports only its public API.
#
#   cmake -DNM=nm -DCC=cc -DSTATIC_LIB=<static archive of the library's objects>
#         -DVERSION_SCRIPT=<cmake/orvcalendar.map, the shared library's export list>
#         [-DLIBRARY=<the installed library target's file, static or shared>]
#         -DINCLUDE_DIR=<include/> -DWORK_DIR=<scratch> -P CheckLibrarySymbols.cmake
#
# 1. A shared library is linked from the static archive with the C compiler alone and
#    -z defs, so the link itself fails on any symbol that only a C++ runtime defines
#    (with the export list of a shared build of the library).
# 2. The symbols the archive and the shared libraries leave undefined (in an archive:
#    not defined by another of its members; weak references of the C start files, such
#    as glibc's __cxa_finalize, left aside) must not be C++ or unwinder symbols:
#    _Z* (std::, operator new/delete _Znw/_Zdl/_Zna/_Zda, any C++ name), __cxa_*,
#    __gxx_*, _Unwind_*.
# 3. Every symbol a shared library exports is a name the public headers declare; no
#    C++ name, no internal helper.
cmake_minimum_required(VERSION 3.25)
set(forbidden "^(_Z|__cxa_|__gxx_|_Unwind_)")
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
set(failed FALSE)

function(run out)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE stdout ERROR_VARIABLE stderr)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "failed (${rc}): ${ARGN}\n${stdout}\n${stderr}")
    endif()
    set(${out} "${stdout}" PARENT_SCOPE)
endfunction()

# The names in the third column of nm lines whose type letter matches `types`.
function(symbols out text types)
    string(REGEX MATCHALL "[^\n]+" lines "${text}")
    set(names)
    foreach(line IN LISTS lines)
        if(line MATCHES "^[0-9a-fA-F ]* (${types}) ([^ @]+)")
            list(APPEND names ${CMAKE_MATCH_2})
        endif()
    endforeach()
    list(REMOVE_DUPLICATES names)
    set(${out} ${names} PARENT_SCOPE)
endfunction()

function(check_undefined file undefined)
    set(bad)
    foreach(name IN LISTS undefined)
        if(name MATCHES "${forbidden}")
            list(APPEND bad ${name})
        endif()
    endforeach()
    list(SORT undefined)
    string(REPLACE ";" " " shown "${undefined}")
    message(STATUS "${file}: needs ${shown}")
    if(bad)
        string(REPLACE ";" " " bad "${bad}")
        message(SEND_ERROR "${file} needs the C++ runtime: ${bad}")
        set(failed TRUE PARENT_SCOPE)
    endif()
endfunction()

# The names the public headers declare: every identifier before "(" or ";" in the
# preprocessed text of all of them (the container macros expanded).
file(GLOB_RECURSE headers RELATIVE ${INCLUDE_DIR} ${INCLUDE_DIR}/Orv/*.h)
set(all_tu "")
foreach(h IN LISTS headers)
    string(APPEND all_tu "#include \"${h}\"\n")
endforeach()
file(WRITE ${WORK_DIR}/all_headers.c "${all_tu}")
run(preprocessed ${CC} -std=c11 -E -P -I${INCLUDE_DIR} ${WORK_DIR}/all_headers.c)
string(REGEX MATCHALL "[A-Za-z_][A-Za-z0-9_]*[ \t\n]*[(;]" declared "${preprocessed}")
list(TRANSFORM declared REPLACE "[ \t\n(;]" "")
list(REMOVE_DUPLICATES declared)

function(check_exports file)
    run(defined ${NM} -D --defined-only ${file})
    symbols(exported "${defined}" "[A-Za-z]")
    set(stray)
    foreach(name IN LISTS exported)
        if(NOT name IN_LIST declared AND NOT name MATCHES "^(_init|_fini|_edata|_end|__bss_start)$")
            list(APPEND stray ${name})
        endif()
    endforeach()
    list(LENGTH exported count)
    message(STATUS "${file}: exports ${count} symbols")
    if(stray)
        string(REPLACE ";" " " stray "${stray}")
        message(SEND_ERROR "${file} exports names the public headers do not declare: ${stray}")
        set(failed TRUE PARENT_SCOPE)
    endif()
endfunction()

function(check_shared file)
    run(undef ${NM} -D -u ${file})
    symbols(undefined "${undef}" "U")
    check_undefined(${file} "${undefined}")
    check_exports(${file})
    set(failed ${failed} PARENT_SCOPE)
endfunction()

function(check_static file)
    run(undef ${NM} -u ${file})
    run(defined ${NM} --defined-only ${file})
    symbols(undefined "${undef}" "U")
    symbols(own "${defined}" "[A-Za-z]")
    list(REMOVE_ITEM undefined ${own} _GLOBAL_OFFSET_TABLE_)
    check_undefined(${file} "${undefined}")
    set(failed ${failed} PARENT_SCOPE)
endfunction()

check_static(${STATIC_LIB})
set(linked ${WORK_DIR}/liborvcalendar-c-linked.so)
run(ignored ${CC} -shared -o ${linked} -Wl,--whole-archive ${STATIC_LIB} -Wl,--no-whole-archive -Wl,-z,defs
    -Wl,--version-script=${VERSION_SCRIPT})
check_shared(${linked})
if(LIBRARY AND NOT LIBRARY STREQUAL STATIC_LIB)
    if(LIBRARY MATCHES "\\.a$")
        check_static(${LIBRARY})
    else()
        check_shared(${LIBRARY})
    endif()
endif()
if(failed)
    message(FATAL_ERROR "library symbol check failed")
endif()
