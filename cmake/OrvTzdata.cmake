# The zone database built into the library (ORV_EMBED_TZDATA): at build time a small
# host program (cmake/TzdbPack.cpp) packs the compiled database folder
# ORV_TZDATA_DIR into a generated source of orvcalendar_objects (options: CMakeLists.txt).
if(ORV_EMBED_TZDATA)
    if(NOT IS_DIRECTORY "${ORV_TZDATA_DIR}")
        message(FATAL_ERROR "ORV_EMBED_TZDATA: no zone database at ${ORV_TZDATA_DIR} (Debian: apt-get install tzdata); "
                            "set ORV_TZDATA_DIR to a compiled database folder, or ORV_EMBED_TZDATA=OFF")
    endif()
    add_executable(orv_tzdb_pack ${CMAKE_CURRENT_LIST_DIR}/TzdbPack.cpp)
    orv_set_warnings(orv_tzdb_pack)
    set(ORV_TZDATA_SOURCE ${CMAKE_CURRENT_BINARY_DIR}/generated/TzdbEmbeddedData.cpp)
    # Regenerated when the packer changes or the database's version file does.
    set(ORV_TZDATA_DEPENDS orv_tzdb_pack)
    if(EXISTS "${ORV_TZDATA_DIR}/tzdata.zi")
        list(APPEND ORV_TZDATA_DEPENDS "${ORV_TZDATA_DIR}/tzdata.zi")
    endif()
    add_custom_command(OUTPUT ${ORV_TZDATA_SOURCE}
        COMMAND ${CMAKE_COMMAND} -E make_directory ${CMAKE_CURRENT_BINARY_DIR}/generated
        COMMAND orv_tzdb_pack "${ORV_TZDATA_DIR}" ${ORV_TZDATA_SOURCE}
        DEPENDS ${ORV_TZDATA_DEPENDS}
        COMMENT "Packing the zone database of ${ORV_TZDATA_DIR}"
        VERBATIM)
    target_sources(orvcalendar_objects PRIVATE ${ORV_TZDATA_SOURCE})
    set_source_files_properties(${CMAKE_CURRENT_SOURCE_DIR}/src/Timezone/TzdbEmbedded.cpp
        PROPERTIES COMPILE_DEFINITIONS ORV_TZDB_EMBEDDED=1)
endif()
