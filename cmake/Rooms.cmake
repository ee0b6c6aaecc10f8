# The rooms of the house: each folder of src/ is a target of its own.
#
# A room's headers are found under its name ("board/AIB.h") by those who link it, and by nobody
# else: each room has an include folder in which it stands alone. So what a room may use is what its
# link line says, and an include that leads up the house finds no file.

# add_room(<folder> USES <room>... SOURCES <file>...)
function(add_room name)
    cmake_parse_arguments(PARSE_ARGV 1 ROOM "" "" "USES;SOURCES")
    add_library(ombrix_${name} STATIC ${ROOM_SOURCES})
    set(door ${CMAKE_BINARY_DIR}/rooms/${name})
    file(MAKE_DIRECTORY ${door})
    file(CREATE_LINK ${CMAKE_CURRENT_SOURCE_DIR} ${door}/${name} SYMBOLIC)
    target_include_directories(ombrix_${name} PUBLIC ${door})
    list(TRANSFORM ROOM_USES PREPEND ombrix_)
    target_link_libraries(ombrix_${name} PUBLIC ombrix_options ${ROOM_USES})
endfunction()
