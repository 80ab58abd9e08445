# Builds the library twice from SOURCE_DIR, static and shared, installs each into a
# scratch prefix, and builds and runs three consumers against each install:
#   - a C-only CMake project: find_package(OrvCalendar 1.0) and OrvCalendar::orvcalendar;
#   - a plain C compile: cc consumer.c $(pkg-config --cflags --libs orvcalendar);
#   - a C++-only CMake project (the C++ header when installed).
# The shared install must be liborvcalendar.so.1 by its SONAME.
#
#   cmake -DSOURCE_DIR=<source> -DWORK_DIR=<scratch> -DCMAKE_C_COMPILER=<cc>
#         -DCMAKE_CXX_COMPILER=<c++> [-DKINDS=static;shared] -P RunConsumeTest.cmake
cmake_minimum_required(VERSION 3.25)
if(NOT KINDS)
    set(KINDS static shared)
endif()
set(expected "2025-01-01 1735689600000000000\n")
set(consume_dir ${SOURCE_DIR}/tests/consume)
file(REMOVE_RECURSE ${WORK_DIR})
file(MAKE_DIRECTORY ${WORK_DIR})
find_program(PKG_CONFIG pkg-config REQUIRED)
find_program(READELF readelf)

function(run)
    execute_process(COMMAND ${ARGN} RESULT_VARIABLE rc OUTPUT_VARIABLE out ERROR_VARIABLE err)
    if(NOT rc EQUAL 0)
        message(FATAL_ERROR "failed (${rc}): ${ARGN}\n${out}\n${err}")
    endif()
    set(last_output "${out}" PARENT_SCOPE)
endfunction()

function(expect_output what)
    if(NOT last_output STREQUAL expected)
        message(FATAL_ERROR "${what} printed '${last_output}', expected '${expected}'")
    endif()
    message(STATUS "${what}: ok")
endfunction()

foreach(kind IN LISTS KINDS)
    # The library, configured, built and installed as a user would (the prefix given
    # only at install time).
    set(prefix ${WORK_DIR}/prefix-${kind})
    set(shared OFF)
    if(kind STREQUAL "shared")
        set(shared ON)
    endif()
    run(${CMAKE_COMMAND} -S ${SOURCE_DIR} -B ${WORK_DIR}/lib-${kind} -DCMAKE_BUILD_TYPE=Release
        -DBUILD_SHARED_LIBS=${shared} -DORV_BUILD_TESTS=OFF -DORV_BUILD_TOOLS=OFF -DORV_BUILD_EXAMPLES=OFF
        -DCMAKE_C_COMPILER=${CMAKE_C_COMPILER} -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER})
    run(${CMAKE_COMMAND} --build ${WORK_DIR}/lib-${kind} --target orvcalendar --parallel 2)
    run(${CMAKE_COMMAND} --install ${WORK_DIR}/lib-${kind} --prefix ${prefix})

    # Where the install put the library (lib, lib64 or a multiarch folder).
    file(GLOB_RECURSE pc_files ${prefix}/lib*/orvcalendar.pc)
    list(LENGTH pc_files pc_count)
    if(NOT pc_count EQUAL 1)
        message(FATAL_ERROR "${kind}: expected one orvcalendar.pc under ${prefix}, found '${pc_files}'")
    endif()
    get_filename_component(libdir ${pc_files} DIRECTORY)
    get_filename_component(libdir ${libdir} DIRECTORY)
    set(needed include/Orv/Calendar/OrvDateTime.h)
    foreach(f pkgconfig/orvcalendar.pc cmake/OrvCalendar/OrvCalendarConfig.cmake
              cmake/OrvCalendar/OrvCalendarConfigVersion.cmake)
        list(APPEND needed ${libdir}/${f})
    endforeach()
    if(kind STREQUAL "shared")
        list(APPEND needed ${libdir}/liborvcalendar.so ${libdir}/liborvcalendar.so.1)
    else()
        list(APPEND needed ${libdir}/liborvcalendar.a)
    endif()
    foreach(f IN LISTS needed)
        if(NOT IS_ABSOLUTE ${f})
            set(f ${prefix}/${f})
        endif()
        if(NOT EXISTS ${f})
            message(FATAL_ERROR "${kind}: not installed: ${f}")
        endif()
    endforeach()
    if(kind STREQUAL "shared" AND READELF)
        run(${READELF} -d ${libdir}/liborvcalendar.so)
        if(NOT last_output MATCHES "SONAME[^\n]*\\[liborvcalendar\\.so\\.1\\]")
            message(FATAL_ERROR "shared library without the SONAME liborvcalendar.so.1:\n${last_output}")
        endif()
        if(last_output MATCHES "NEEDED[^\n]*libstdc\\+\\+")
            message(FATAL_ERROR "shared library needs the C++ runtime:\n${last_output}")
        endif()
    endif()

    # CMake projects: C only, then C++ only; find_package asks for version 1.0.
    foreach(lang C CXX)
        set(bdir ${WORK_DIR}/${kind}-cmake-${lang})
        run(${CMAKE_COMMAND} -S ${consume_dir} -B ${bdir} -DCONSUMER_LANGUAGE=${lang}
            -DCMAKE_C_COMPILER=${CMAKE_C_COMPILER} -DCMAKE_CXX_COMPILER=${CMAKE_CXX_COMPILER}
            -DCMAKE_PREFIX_PATH=${prefix})
        run(${CMAKE_COMMAND} --build ${bdir})
        run(${bdir}/consumer)
        expect_output("${kind}, CMake ${lang} project")
    endforeach()

    # A plain compile through pkg-config, which must carry the version.
    set(ENV{PKG_CONFIG_PATH} ${libdir}/pkgconfig)
    run(${PKG_CONFIG} --modversion orvcalendar)
    if(NOT last_output MATCHES "^1\\.0\\.0")
        message(FATAL_ERROR "pkg-config version: '${last_output}'")
    endif()
    set(exe ${WORK_DIR}/${kind}-pkgconfig-consumer)
    run(sh -c "\"$1\" -std=c11 -Wall -Wextra -Wpedantic -Werror -o \"$2\" \"$3\" $(\"$4\" --cflags --libs orvcalendar)"
        sh ${CMAKE_C_COMPILER} ${exe} ${consume_dir}/consumer.c ${PKG_CONFIG})
    set(ENV{LD_LIBRARY_PATH} ${libdir})
    run(${exe})
    unset(ENV{LD_LIBRARY_PATH})
    expect_output("${kind}, cc with pkg-config")
endforeach()
