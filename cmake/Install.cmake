# The installed package: the library, the public headers (those whose names begin with Zun, and the C++ face), a CMake
# package and a pkg-config module.
include(CMakePackageConfigHelpers)

install(TARGETS zunrtcp EXPORT ZunRtcpTargets)
install(DIRECTORY Zun DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} FILES_MATCHING PATTERN "Zun*.h"
        PATTERN "Zun/Rtp/Cpp/*.h")
install(EXPORT ZunRtcpTargets NAMESPACE ZunRtcp:: DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZunRtcp)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ZunRtcpConfig.cmake.in ${PROJECT_BINARY_DIR}/ZunRtcpConfig.cmake
                              INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZunRtcp)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZunRtcpConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZunRtcpConfig.cmake ${PROJECT_BINARY_DIR}/ZunRtcpConfigVersion.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/ZunRtcp)

configure_file(${CMAKE_CURRENT_LIST_DIR}/zunrtcp.pc.in ${PROJECT_BINARY_DIR}/zunrtcp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zunrtcp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
