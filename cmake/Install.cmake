# The installed package: the library, the public headers (those whose names begin with Zun, and those of C++), a CMake package and a
# pkg-config module. All of it may be moved to another place as a whole.
include(GNUInstallDirs)
include(CMakePackageConfigHelpers)

set(zunrtcp_cmake_dir ${CMAKE_INSTALL_LIBDIR}/cmake/ZunRtcp)
foreach(kind IN LISTS zunrtcp_kinds)
  target_include_directories(zunrtcp_${kind} INTERFACE $<INSTALL_INTERFACE:${CMAKE_INSTALL_INCLUDEDIR}>)
  install(TARGETS zunrtcp_${kind} EXPORT ZunRtcp_${kind}
          RUNTIME COMPONENT runtime
          LIBRARY COMPONENT runtime NAMELINK_COMPONENT development
          ARCHIVE COMPONENT development)
  install(EXPORT ZunRtcp_${kind} NAMESPACE ZunRtcp:: DESTINATION ${zunrtcp_cmake_dir} COMPONENT development)
endforeach()
set(zunrtcp_headers_left_out PATTERN Zun/Rtp/Core/ZunRtcpRooms.h EXCLUDE)
foreach(part IN LISTS zunrtcp_left_out)
  list(APPEND zunrtcp_headers_left_out REGEX ${part} EXCLUDE)
endforeach()
install(DIRECTORY ${PROJECT_SOURCE_DIR}/Zun DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development
        FILES_MATCHING PATTERN "Zun*.h" PATTERN "Zun/Rtp/Cpp/*.h" ${zunrtcp_headers_left_out})
file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/ZunRtcpRooms.h CONTENT "${zunrtcp_rooms_header}" @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/ZunRtcpRooms.h DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/Zun/Rtp/Core COMPONENT development)

configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/ZunRtcpConfig.cmake.in ${PROJECT_BINARY_DIR}/ZunRtcpConfig.cmake
                              INSTALL_DESTINATION ${zunrtcp_cmake_dir} NO_SET_AND_CHECK_MACRO)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/ZunRtcpConfigVersion.cmake COMPATIBILITY SameMinorVersion)
install(FILES ${PROJECT_BINARY_DIR}/ZunRtcpConfig.cmake ${PROJECT_BINARY_DIR}/ZunRtcpConfigVersion.cmake
        DESTINATION ${zunrtcp_cmake_dir} COMPONENT development)

# pkg-config knows where it found the module, and the prefix is told from there; no other than an absolute place of the
# libraries keeps it from being moved.
if(IS_ABSOLUTE "${CMAKE_INSTALL_LIBDIR}" OR IS_ABSOLUTE "${CMAKE_INSTALL_INCLUDEDIR}")
  set(zunrtcp_pc_prefix ${CMAKE_INSTALL_PREFIX})
  set(zunrtcp_pc_libdir ${CMAKE_INSTALL_FULL_LIBDIR})
  set(zunrtcp_pc_includedir ${CMAKE_INSTALL_FULL_INCLUDEDIR})
else()
  file(RELATIVE_PATH zunrtcp_pc_prefix /${CMAKE_INSTALL_LIBDIR}/pkgconfig /)
  string(REGEX REPLACE "/$" "" zunrtcp_pc_prefix "\${pcfiledir}/${zunrtcp_pc_prefix}")
  set(zunrtcp_pc_libdir "\${prefix}/${CMAKE_INSTALL_LIBDIR}")
  set(zunrtcp_pc_includedir "\${prefix}/${CMAKE_INSTALL_INCLUDEDIR}")
endif()
configure_file(${CMAKE_CURRENT_LIST_DIR}/zunrtcp.pc.in ${PROJECT_BINARY_DIR}/zunrtcp.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/zunrtcp.pc DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
