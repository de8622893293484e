# What `cmake --install` puts where, in three components that can be installed apart with --component:
#   runtime      the platform's library, the editor and its displays as modules with their manifests
#   host         style-editor and the stand-ins for the product's components
#   development  what other programs are built with: find_package(style_node), pkg-config style-node

include_guard()
include(CMakePackageConfigHelpers)

set(PACKAGE_FOLDER ${CMAKE_INSTALL_LIBDIR}/cmake/style_node)

# install_headers(layer/name.h...): from the folder's include root. Only these are public.
function(install_headers)
    foreach(header IN LISTS ARGN)
        cmake_path(GET header PARENT_PATH layer)
        install(FILES include/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/style-node/${layer} COMPONENT development)
    endforeach()
endfunction()

# install_library(TARGET AS NAME): others link style_node::NAME.
function(install_library target as name)
    set_target_properties(${target} PROPERTIES EXPORT_NAME ${name})
    install(TARGETS ${target} EXPORT style_node
            LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
            INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/style-node)
endfunction()

# Finds the library from wherever the whole tree is put.
function(install_program target folder component)
    file(RELATIVE_PATH libraries ${CMAKE_INSTALL_PREFIX}/${folder} ${CMAKE_INSTALL_FULL_LIBDIR})
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN/${libraries}")
    install(TARGETS ${target} RUNTIME DESTINATION ${folder} COMPONENT ${component})
endfunction()

# The package needs no other one, so the list of its targets is its whole configuration.
function(install_shared_files)
    install(EXPORT style_node FILE style_node-config.cmake NAMESPACE style_node::
            DESTINATION ${PACKAGE_FOLDER} COMPONENT development)
    set(version ${PROJECT_BINARY_DIR}/style_node-config-version.cmake)
    write_basic_package_version_file(${version} COMPATIBILITY SameMajorVersion)
    install(FILES ${version} DESTINATION ${PACKAGE_FOLDER} COMPONENT development)

    file(RELATIVE_PATH FROM_PC_FILE ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
    configure_file(${PROJECT_SOURCE_DIR}/packaging/style-node.pc.in ${PROJECT_BINARY_DIR}/style-node.pc @ONLY)
    install(FILES ${PROJECT_BINARY_DIR}/style-node.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig
            COMPONENT development)

    install(FILES ${PROJECT_SOURCE_DIR}/docs/style-editor.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT host)
    install(FILES ${PROJECT_SOURCE_DIR}/packaging/completion/style-editor
            DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT host)
endfunction()
