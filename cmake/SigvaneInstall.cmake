# What "cmake --install" puts where: the program and all that a desktop needs to list it.
include(GNUInstallDirs)

install(TARGETS sigvane RUNTIME DESTINATION "${CMAKE_INSTALL_BINDIR}")
install(FILES packaging/sigvane.desktop DESTINATION "${CMAKE_INSTALL_DATADIR}/applications")
install(FILES packaging/sigvane.metainfo.xml DESTINATION "${CMAKE_INSTALL_DATADIR}/metainfo")
install(FILES packaging/sigvane.1 DESTINATION "${CMAKE_INSTALL_MANDIR}/man1")

set(hicolor "${CMAKE_INSTALL_DATADIR}/icons/hicolor")
foreach(size IN ITEMS 16 24 32 48 64 128 256)
    install(FILES resources/icons/sigvane-${size}.png
        DESTINATION "${hicolor}/${size}x${size}/apps" RENAME sigvane.png)
endforeach()
install(FILES resources/icons/svg/sigvane.svg DESTINATION "${hicolor}/scalable/apps")
