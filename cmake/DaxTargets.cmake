# What every target of the project is built with.
add_library(dax_options INTERFACE)
target_compile_options(dax_options INTERFACE -Wall -Wextra -Wpedantic -Wshadow -Wconversion)
# g++ 12 sees overlaps in inlined std::string operations that aren't there.
target_compile_options(dax_options INTERFACE $<$<AND:$<CXX_COMPILER_ID:GNU>,$<CONFIG:Release>>:-Wno-restrict>)
if(DAX_WARNINGS_AS_ERRORS)
    target_compile_options(dax_options INTERFACE -Werror)
endif()
if(DAX_SANITIZE)
    target_compile_options(dax_options INTERFACE -fsanitize=${DAX_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
    target_link_options(dax_options INTERFACE -fsanitize=${DAX_SANITIZE})
endif()

# A shared library of the sibling components: sources in the current folder, headers in contracts/.
function(dax_add_component name)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    string(TOUPPER ${name} upper)
    add_library(${name} SHARED ${sources})
    add_library(daxlib::${name} ALIAS ${name})
    target_compile_definitions(${name} PRIVATE ${upper}_BUILD)
    target_include_directories(${name} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}/contracts>
                                              $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
    target_compile_features(${name} PUBLIC cxx_std_20)
    target_link_libraries(${name} PRIVATE $<BUILD_INTERFACE:dax_options>)
    set_target_properties(${name} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR}
                          INSTALL_RPATH "$ORIGIN")
    install(TARGETS ${name} EXPORT daxlibTargets)
endfunction()

# A format plug-in in a library of its own: sources in the current folder, and its manifest beside them.
function(dax_add_plugin name manifest)
    file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.cpp)
    add_library(${name} MODULE ${sources})
    target_link_libraries(${name} PRIVATE daxlib dax_options)
    set_target_properties(${name} PROPERTIES LIBRARY_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/${DAX_PLUGIN_DIR}
                          INSTALL_RPATH "$ORIGIN/${DAX_LIB_FROM_PLUGINS}")
    configure_file(${manifest} ${CMAKE_BINARY_DIR}/${DAX_DATA_DIR}/plugins.d/${manifest} NO_SOURCE_PERMISSIONS COPYONLY)
    install(TARGETS ${name} LIBRARY DESTINATION ${DAX_PLUGIN_DIR})
    install(FILES ${manifest} DESTINATION ${DAX_DATA_DIR}/plugins.d)
endfunction()
