# The language files shipped with the program are built into it, so that a
# fresh data folder gets them without an installer.
set(_orv_lng_in ${PROJECT_SOURCE_DIR}/data/Language/English.lng)
set(_orv_lng_out ${PROJECT_BINARY_DIR}/generated/core/i18n/english_lng.cpp)
add_custom_command(
    OUTPUT ${_orv_lng_out}
    COMMAND ${CMAKE_COMMAND} -DINPUT=${_orv_lng_in} -DOUTPUT=${_orv_lng_out}
            -DSYMBOL=englishLanguageFile -P ${CMAKE_CURRENT_LIST_DIR}/embed_file.cmake
    DEPENDS ${_orv_lng_in} ${CMAKE_CURRENT_LIST_DIR}/embed_file.cmake
    COMMENT "Embedding English.lng")
target_sources(orv_i18n PRIVATE ${_orv_lng_out})
