# The generator that expands the world of parts, and its outputs. Whoever compiles one of them adds its variable to the
# sources and depends on the target tovren_world:
#   TOVREN_WORLD_LIBRARY_SOURCES    the two compressed naming tables
#   TOVREN_WORLD_STANDALONE_SOURCES the catalogue tables of the standalone host (standalone/h/tovren_catalogue_tables.h)
#   TOVREN_WORLD_HEADERS            the headers of the two compressed naming tables
#   TOVREN_WORLD_PART_LIST          the product's part list, pgm_parts.txt
#   TOVREN_WORLD_FAMILY_LIST        number, name and own|none (record of the device database) of each family
#   TOVREN_WORLD_PCF_RECORD_LIST    the PCF names that have a record in the device database
set(TOVREN_WORLD_DESCRIPTION
    ${PROJECT_SOURCE_DIR}/data/catalogue/world.txt
    ${PROJECT_SOURCE_DIR}/data/catalogue/shape.txt
    ${PROJECT_SOURCE_DIR}/data/naming/scheme.txt)
set(TOVREN_WORLD_LIBRARY_SOURCES
    ${TOVREN_GEN_DIR}/pgm/tovren/pgmddb_grammar_data.cpp
    ${TOVREN_GEN_DIR}/pgm/tovren/pgmddb_opn_data.cpp)
set(TOVREN_WORLD_STANDALONE_SOURCES ${TOVREN_GEN_DIR}/standalone/tovren_catalogue_tables.cpp)
set(TOVREN_WORLD_HEADERS
    ${TOVREN_GEN_DIR}/h/pgmddb_grammar_data.h
    ${TOVREN_GEN_DIR}/h/pgmddb_opn_data.h)
set(TOVREN_WORLD_PART_LIST ${TOVREN_GEN_DIR}/catalogue/pgm_parts.txt)
set(TOVREN_WORLD_FAMILY_LIST ${TOVREN_GEN_DIR}/catalogue/catalogue_families.txt)
set(TOVREN_WORLD_PCF_RECORD_LIST ${TOVREN_GEN_DIR}/catalogue/catalogue_pcf_records.txt)
set(TOVREN_WORLD_OUTPUTS
    ${TOVREN_WORLD_LIBRARY_SOURCES}
    ${TOVREN_WORLD_STANDALONE_SOURCES}
    ${TOVREN_WORLD_HEADERS}
    ${TOVREN_WORLD_PART_LIST}
    ${TOVREN_WORLD_FAMILY_LIST}
    ${TOVREN_WORLD_PCF_RECORD_LIST})

add_executable(tovren_world_gen
    ${CMAKE_CURRENT_LIST_DIR}/tovren_world_gen.cpp
    ${CMAKE_CURRENT_LIST_DIR}/world_blob.cpp
    ${CMAKE_CURRENT_LIST_DIR}/world_description.cpp
    ${CMAKE_CURRENT_LIST_DIR}/world_expand.cpp
    ${CMAKE_CURRENT_LIST_DIR}/world_maps.cpp
    ${CMAKE_CURRENT_LIST_DIR}/world_rows.cpp
    ${CMAKE_CURRENT_LIST_DIR}/world_scheme.cpp
    ${CMAKE_CURRENT_LIST_DIR}/world_tables.cpp)
target_link_libraries(tovren_world_gen PRIVATE ZLIB::ZLIB tovren_warnings tovren_build)
set_target_properties(tovren_world_gen PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/generators)

add_custom_command(
    OUTPUT ${TOVREN_WORLD_OUTPUTS}
    COMMAND tovren_world_gen data ${TOVREN_GEN_DIR}
    WORKING_DIRECTORY ${PROJECT_SOURCE_DIR}
    DEPENDS tovren_world_gen ${TOVREN_WORLD_DESCRIPTION}
    COMMENT "Expanding the world of parts"
    VERBATIM)
add_custom_target(tovren_world DEPENDS ${TOVREN_WORLD_OUTPUTS})
