# Debian packages by `cpack -G DEB`: the library, what is needed to compile against it, and the tool. packaging/make-debs
# configures the tree for it.
set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_NAME zunrtcp)
set(CPACK_PACKAGE_VENDOR "the zunrtcp developers")
set(CPACK_PACKAGE_CONTACT "the zunrtcp developers <zunrtcp@example.invalid>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_STRIP_FILES ON)
set(CPACK_PACKAGING_INSTALL_PREFIX /usr)
set(CPACK_INSTALL_DEFAULT_DIRECTORY_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE GROUP_READ GROUP_EXECUTE WORLD_READ
    WORLD_EXECUTE)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_PRIORITY optional)

set(zunrtcp_deb_runtime libzunrtcp${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})
set(zunrtcp_deb_development libzunrtcp-dev)
set(zunrtcp_deb_tool zunrtcp)
set(zunrtcp_debian ${PROJECT_SOURCE_DIR}/packaging/debian)

set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME ${zunrtcp_deb_runtime})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SHLIBDEPS ON)
# What programs that use the library depend on, and the cache of libraries that dpkg itself brings up to date.
file(WRITE ${PROJECT_BINARY_DIR}/debian/shlibs
     "libzunrtcp ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR} ${zunrtcp_deb_runtime} (>= ${PROJECT_VERSION})\n")
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA
    "${zunrtcp_debian}/symbols;${PROJECT_BINARY_DIR}/debian/shlibs;${PROJECT_BINARY_DIR}/debian/triggers")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME ${zunrtcp_deb_development})
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS "${zunrtcp_deb_runtime} (= ${PROJECT_VERSION})")
set(CPACK_DEBIAN_TOOL_PACKAGE_NAME ${zunrtcp_deb_tool})
set(CPACK_DEBIAN_TOOL_PACKAGE_SECTION net)
set(CPACK_DEBIAN_TOOL_PACKAGE_SHLIBDEPS ON)

# The first line of a description is its synopsis.
set(about "\
This is the packet layer of RTCP, with which the peers of a call tell what\n\
they receive and ask for more: each kind of packet is an object that is read\n\
from the bytes of a datagram and written back into bytes.")
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "RTCP compound packets as typed objects\n${about}")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "RTCP compound packets as typed objects (development)\n${about}\n.\n\
These are the headers, the static library and what CMake and pkg-config need.")
set(CPACK_COMPONENT_TOOL_DESCRIPTION "look at the RTCP of a capture, field by field\n\
It prints the RTCP packets of pcap and pcapng files, writes each datagram\n\
back and says which rule explains every byte that is not the same.")

# What Debian's policy wants beside the files: a copyright, a compressed changelog, a manual page of the tool.
set(made ${PROJECT_BINARY_DIR}/debian)
file(MAKE_DIRECTORY ${made})
find_program(ZUNRTCP_GZIP gzip REQUIRED)
function(zunrtcp_compressed output input)
  add_custom_command(OUTPUT ${output} DEPENDS ${input} VERBATIM
                     COMMAND sh -c "\"$1\" -9nc \"$2\" > \"$3\"" sh ${ZUNRTCP_GZIP} ${input} ${output})
endfunction()
zunrtcp_compressed(${made}/changelog.gz ${zunrtcp_debian}/changelog)
set(documents ${made}/changelog.gz)

if(TARGET zunrtcp_tool)
  list(APPEND CPACK_COMPONENTS_ALL tool)
  foreach(form man bash fish zsh)
    add_custom_command(OUTPUT ${made}/zunrtcp.${form} DEPENDS zunrtcp_tool ${PROJECT_SOURCE_DIR}/packaging/tool/describe-tool
                       VERBATIM COMMAND sh -c "\"$1\" $2 \"$3\" $4 > \"$5\"" sh
                       ${PROJECT_SOURCE_DIR}/packaging/tool/describe-tool ${form} $<TARGET_FILE:zunrtcp_tool>
                       ${PROJECT_VERSION} ${made}/zunrtcp.${form})
    list(APPEND documents ${made}/zunrtcp.${form})
  endforeach()
  zunrtcp_compressed(${made}/zunrtcp.1.gz ${made}/zunrtcp.man)
  list(APPEND documents ${made}/zunrtcp.1.gz)
  install(FILES ${made}/zunrtcp.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT tool)
  install(FILES ${made}/zunrtcp.bash DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/bash-completion/completions COMPONENT tool
          RENAME zunrtcp)
  install(FILES ${made}/zunrtcp.fish DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/fish/vendor_completions.d COMPONENT tool)
  install(FILES ${made}/zunrtcp.zsh DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/zsh/vendor-completions COMPONENT tool
          RENAME _zunrtcp)
endif()
add_custom_target(zunrtcp_debian_documents ALL DEPENDS ${documents})
foreach(component IN LISTS CPACK_COMPONENTS_ALL)
  install(FILES ${made}/changelog.gz ${zunrtcp_debian}/copyright COMPONENT ${component}
          DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/doc/${zunrtcp_deb_${component}})
endforeach()
# CPack writes calls of ldconfig into the scripts, whatever triggers there are.
file(WRITE ${made}/overrides "${zunrtcp_deb_runtime}: maintscript-calls-ldconfig [postinst]\n"
     "${zunrtcp_deb_runtime}: maintscript-calls-ldconfig [postrm]\n")
install(FILES ${made}/overrides DESTINATION ${CMAKE_INSTALL_DATAROOTDIR}/lintian/overrides RENAME ${zunrtcp_deb_runtime}
        COMPONENT runtime)
include(CPack)
