# A room is a folder that is one target: all of its .cpp files. Its headers are seen by those rooms alone that name it
# after MAY_SEE, and by those above them: a forbidden include does not compile.
#
#   zarn_room(NAME [MAY_SEE TARGET...] [PRIVATE TARGET...])
#
# A folder with include/ in it keeps its public headers there (included as <room/Header.h>) and the others to itself.
function(zarn_room name)
    cmake_parse_arguments(room "" "" "MAY_SEE;PRIVATE" ${ARGN})
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    add_library(${name} STATIC ${sources})
    if(IS_DIRECTORY ${CMAKE_CURRENT_SOURCE_DIR}/include)
        target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR}/include)
    else()
        target_include_directories(${name} PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
    endif()
    target_link_libraries(${name} PUBLIC ${room_MAY_SEE} PRIVATE zarn_options ${room_PRIVATE})
endfunction()
