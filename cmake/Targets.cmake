# The layers. A folder's CMakeLists.txt says which of its files belong to which.

# foundation, platform interfaces and models: the standard library and ICU, no Qt on the include path.
add_library(taliro_core STATIC)
target_link_libraries(taliro_core PUBLIC taliro_options ICU::uc ICU::i18n Threads::Threads
                      PRIVATE PkgConfig::PLIST nlohmann_json::nlohmann_json)
target_include_directories(taliro_core PUBLIC ${CMAKE_SOURCE_DIR}/src)
target_precompile_headers(taliro_core PRIVATE ${CMAKE_SOURCE_DIR}/cmake/CorePrefix.h)

# The Linux desktop behind the platform interfaces.
add_library(taliro_linux STATIC)
target_link_libraries(taliro_linux PUBLIC taliro_core Qt6::Core Qt6::Gui Qt6::Widgets Qt6::DBus
                      PRIVATE Qt6::Network PkgConfig::PLIST PkgConfig::XCB PkgConfig::XKB PkgConfig::GIO)
set_target_properties(taliro_linux PROPERTIES AUTOMOC ON)
target_precompile_headers(taliro_linux PRIVATE ${CMAKE_SOURCE_DIR}/cmake/QtPrefix.h)

# What a person sees.
add_library(taliro_ui STATIC)
target_link_libraries(taliro_ui PUBLIC taliro_core Qt6::Core Qt6::Gui Qt6::Widgets PRIVATE Qt6::Svg)
set_target_properties(taliro_ui PROPERTIES AUTOMOC ON)
target_precompile_headers(taliro_ui PRIVATE ${CMAKE_SOURCE_DIR}/cmake/QtPrefix.h)

foreach(target taliro_core taliro_linux taliro_ui)
    target_compile_definitions(${target} PRIVATE QT_NO_KEYWORDS QT_NO_CAST_FROM_ASCII QT_NO_FOREACH)
endforeach()

# The build fails where a file includes what its layer may not.
add_custom_target(layers ALL
    COMMAND ${CMAKE_COMMAND} -DSOURCE=${CMAKE_SOURCE_DIR}/src -P ${CMAKE_SOURCE_DIR}/cmake/layers.cmake
    COMMENT "Checking the layers")
add_dependencies(taliro_core layers)
