# One target per folder. `layer` gives each target its own include root, <folder>/include, and
# passes on only those of the layers it names; a layer that does not exist yet is refused, so that
# the order in the top CMakeLists.txt is the direction of the includes.

include_guard()
find_package(Threads REQUIRED)

add_library(layer_options INTERFACE)
target_compile_options(layer_options INTERFACE
    -Wall -Wextra -Wpedantic -Werror -Wconversion -Wsign-conversion
    $<IF:$<CXX_COMPILER_ID:GNU>,-Wshadow=local,-Wshadow>
    -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast -Wcast-qual -Wformat=2
    -Wimplicit-fallthrough -fvisibility=hidden -fno-strict-overflow)
if(STYLE_NODE_SANITIZE)
    target_compile_options(layer_options INTERFACE
        -fsanitize=${STYLE_NODE_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(layer_options INTERFACE -fsanitize=${STYLE_NODE_SANITIZE})
endif()

# Every source file of the folder has to be in the list: a forgotten test would never fail.
function(require_all_sources target)
    file(GLOB present RELATIVE ${CMAKE_CURRENT_SOURCE_DIR} CONFIGURE_DEPENDS *.cpp)
    foreach(source IN LISTS present)
        if(NOT source IN_LIST ARGN)
            message(FATAL_ERROR "${CMAKE_CURRENT_SOURCE_DIR}/${source} belongs to no target; add it to ${target}")
        endif()
    endforeach()
endfunction()

function(require_layers target)
    foreach(layer IN LISTS ARGN)
        if(NOT TARGET ${layer})
            message(FATAL_ERROR "${target} uses ${layer}, which is not built before it: the includes run one way")
        endif()
    endforeach()
endfunction()

# layer(NAME SOURCES file... LAYERS layer... [EXTERNAL library...] [OTHER file...])
#   LAYERS    layers whose headers this one's public headers may include
#   EXTERNAL  third-party libraries, used by the sources only
#   OTHER     sources of the folder that belong to another target (generators)
function(layer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "" "SOURCES;LAYERS;EXTERNAL;OTHER")
    require_layers(${name} ${arg_LAYERS})
    require_all_sources(${name} ${arg_SOURCES} ${arg_OTHER})
    if(arg_SOURCES)
        add_library(${name} STATIC ${arg_SOURCES})
        target_include_directories(${name} PUBLIC include)
        target_link_libraries(${name} PUBLIC ${arg_LAYERS} Threads::Threads
                                      PRIVATE layer_options ${arg_EXTERNAL})
    else()
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE include)
        target_link_libraries(${name} INTERFACE ${arg_LAYERS})
    endif()
endfunction()
