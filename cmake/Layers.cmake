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
    -Wimplicit-fallthrough -fno-strict-overflow
    # Else a template's static object would keep a module from being unloaded.
    $<$<CXX_COMPILER_ID:GNU>:-fno-gnu-unique>)
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

# layer(NAME SOURCES file... LAYERS layer... [EXTERNAL library...] [OTHER file...] [PLATFORM])
#   LAYERS    layers whose headers this one's public headers may include
#   EXTERNAL  third-party libraries, used by the sources only
#   OTHER     sources of the folder that belong to another target (generators, modules)
#   PLATFORM  a part of the shared library style_platform: others see its headers and link that library
function(layer name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "PLATFORM" "" "SOURCES;LAYERS;EXTERNAL;OTHER")
    require_layers(${name} ${arg_LAYERS})
    require_all_sources(${name} ${arg_SOURCES} ${arg_OTHER})
    if(arg_PLATFORM)
        platform_layer(${name})
    elseif(arg_SOURCES)
        add_library(${name} STATIC ${arg_SOURCES})
        target_include_directories(${name} PUBLIC include)
        target_compile_options(${name} PRIVATE -fvisibility=hidden)
        target_link_libraries(${name} PUBLIC ${arg_LAYERS} Threads::Threads
                                      PRIVATE layer_options ${arg_EXTERNAL})
    else()
        add_library(${name} INTERFACE)
        target_include_directories(${name} INTERFACE include)
        target_link_libraries(${name} INTERFACE ${arg_LAYERS})
    endif()
endfunction()

# The objects see the headers of the layers below, not the library that they become.
macro(platform_layer name)
    list(TRANSFORM arg_LAYERS APPEND _headers OUTPUT_VARIABLE headers)
    add_library(${name}_headers INTERFACE)
    target_include_directories(${name}_headers INTERFACE include)
    target_link_libraries(${name}_headers INTERFACE ${headers})
    add_library(${name}_objects OBJECT ${arg_SOURCES})
    target_link_libraries(${name}_objects PRIVATE ${name}_headers layer_options ${arg_EXTERNAL})
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE ${name}_headers style_platform)
    set_property(GLOBAL APPEND PROPERTY PLATFORM_LAYERS ${name})
    set_property(GLOBAL APPEND PROPERTY PLATFORM_EXTERNAL ${arg_EXTERNAL})
endmacro()

# server_module(NAME SOURCES file... LAYERS layer... [COMPONENT component]): an in-process server, which exports its
# four entry points and nothing else. Nobody but its owner may write it, or it would not be loaded. It is
# installed as a part of the component (Install.cmake), runtime unless told, with its manifest NAME.classes.
function(server_module name)
    cmake_parse_arguments(PARSE_ARGV 1 arg "" "COMPONENT" "SOURCES;LAYERS")
    require_layers(${name} ${arg_LAYERS})
    set(map ${PROJECT_SOURCE_DIR}/cmake/server.map)
    add_library(${name} MODULE ${arg_SOURCES})
    target_compile_options(${name} PRIVATE -fvisibility=hidden)
    target_link_libraries(${name} PRIVATE ${arg_LAYERS} layer_options)
    target_link_options(${name} PRIVATE -Wl,--version-script=${map})
    if(NOT STYLE_NODE_SANITIZE) # the sanitizers' own symbols come from the program
        target_link_options(${name} PRIVATE -Wl,-z,defs)
    endif()
    set_target_properties(${name} PROPERTIES PREFIX "" LINK_DEPENDS ${map}
                          LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${MODULE_FOLDER}
                          INSTALL_RPATH "$ORIGIN/..")
    add_custom_command(TARGET ${name} POST_BUILD
        COMMAND chmod go-w $<TARGET_FILE:${name}> $<TARGET_FILE_DIR:${name}> VERBATIM)
    if(NOT arg_COMPONENT)
        set(arg_COMPONENT runtime)
    endif()
    install(TARGETS ${name} LIBRARY DESTINATION ${MODULE_FOLDER} COMPONENT ${arg_COMPONENT})
    install(FILES ${name}.classes DESTINATION ${MODULE_FOLDER}/classes.d COMPONENT ${arg_COMPONENT})
endfunction()
