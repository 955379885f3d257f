# Where everything goes: the bundle to <prefix>/lib/taliro, links to its programs to <prefix>/bin, and
# what the desktop reads to <prefix>/share.

# All that build/<preset>/bundle holds.
add_custom_target(bundle)
add_dependencies(bundle Taliro taliro taliro-renderer taliro-player)

set(CMAKE_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS
    OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
set(resources ${CMAKE_SOURCE_DIR}/resources)
set(made ${CMAKE_BINARY_DIR}/resources)
set(id com.taliro.Taliro)

install(TARGETS Taliro RUNTIME DESTINATION lib/taliro)
install(TARGETS taliro taliro-renderer taliro-player RUNTIME DESTINATION lib/taliro/Resources)

function(install_link name target)
    install(CODE "
        set(link \"\$ENV{DESTDIR}\${CMAKE_INSTALL_PREFIX}/bin/${name}\")
        get_filename_component(folder \"\${link}\" DIRECTORY)
        file(MAKE_DIRECTORY \"\${folder}\")
        file(CREATE_LINK ${target} \"\${link}\" SYMBOLIC)
        message(STATUS \"Installing: \${link}\")")
endfunction()
install_link(Taliro ../lib/taliro/Taliro)
install_link(taliro ../lib/taliro/Resources/taliro)

install(FILES ${resources}/desktop/${id}.desktop DESTINATION share/applications)
install(FILES ${resources}/desktop/${id}.metainfo.xml DESTINATION share/metainfo)
# Made while installing, when the prefix is known: a package's is not the one that was configured.
install(CODE "
    configure_file(\"${resources}/desktop/${id}.service.in\" \"${made}/${id}.service\" @ONLY)")
install(FILES ${made}/${id}.service DESTINATION share/dbus-1/services)
install(FILES ${resources}/icons/${id}.svg DESTINATION share/icons/hicolor/scalable/apps)
install(FILES ${resources}/icons/${id}-symbolic.svg DESTINATION share/icons/hicolor/symbolic/apps)
foreach(size 16 22 24 32 48 64 128 256 512)
    install(FILES ${resources}/icons/${size}.png DESTINATION share/icons/hicolor/${size}x${size}/apps
            RENAME ${id}.png)
endforeach()

install(FILES ${made}/taliro.1.gz DESTINATION share/man/man1)
install(FILES ${made}/taliro.1.gz DESTINATION share/man/man1 RENAME Taliro.1.gz)
install(FILES ${resources}/completions/taliro.bash DESTINATION share/bash-completion/completions RENAME taliro)
install(FILES ${resources}/completions/_taliro DESTINATION share/zsh/vendor-completions)
install(FILES ${resources}/completions/taliro.fish DESTINATION share/fish/vendor_completions.d)
install(FILES ${CMAKE_SOURCE_DIR}/packaging/copyright ${made}/changelog.Debian.gz DESTINATION share/doc/taliro)

include(cmake/Package.cmake)
