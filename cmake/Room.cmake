# A room is a folder that is one target: all of its .cpp files. Only rooms that name it after MAY_SEE, and those above
# them, can include its headers: a forbidden include does not compile.
#
#   zarn_room(NAME [MAY_SEE TARGET...] [PRIVATE TARGET...])
#
# If the folder has an include/, only the headers in it are public (included as <room/Header.h>).
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
