# Which rooms of kinds are built. The kinds of one that is left out are unknown ones, whose octets are kept and written back.
# Zun/Rtp/Core/ZunRtcpRooms.h tells sources which there are: in this build, and in what adds it as a part of its tree, by
# the definitions of the targets; where the library is installed, by itself, so that no flag can be forgotten.
set(zunrtcp_rooms_out)             # the options that are OFF
set(zunrtcp_left_out)              # a regular expression for each file, or folder, that goes with them
set(zunrtcp_room_definitions)
file(READ ${PROJECT_SOURCE_DIR}/Zun/Rtp/Core/ZunRtcpRooms.h zunrtcp_rooms_header)

# zunrtcp_room(NAME KINDS PART...) -- the option ZUNRTCP_NAME. The parts begin the names of its files, from Zun/Rtp on.
function(zunrtcp_room name kinds)
  option(ZUNRTCP_${name} "Build ${kinds}; what is left out is kept as unknown kinds" ON)
  set(value 1)
  if(NOT ZUNRTCP_${name})
    set(value 0)
    list(TRANSFORM ARGN PREPEND "/Zun/Rtp/")
    list(TRANSFORM ARGN APPEND "([/.]|$)")
    set(zunrtcp_rooms_out ${zunrtcp_rooms_out} ZUNRTCP_${name} PARENT_SCOPE)
    set(zunrtcp_left_out ${zunrtcp_left_out} ${ARGN} PARENT_SCOPE)
    set(zunrtcp_room_definitions ${zunrtcp_room_definitions} ZUN_RTCP_HAS_${name}=0 PARENT_SCOPE)
  endif()
  set(macro ZUN_RTCP_HAS_${name})
  string(REPLACE "#ifndef ${macro}\n#define ${macro} 1\n#endif\n" "#define ${macro} ${value}\n" header "${zunrtcp_rooms_header}")
  if(header STREQUAL zunrtcp_rooms_header)
    message(FATAL_ERROR "ZunRtcpRooms.h does not know ${macro}")
  endif()
  set(zunrtcp_rooms_header "${header}" PARENT_SCOPE)
endfunction()

zunrtcp_room(REPORTS "SR, RR, SDES, BYE and APP" Reports Cpp/Reports Dialect/ZunRtcpComposition)
zunrtcp_room(TRANSPORT_FEEDBACK "transport-layer feedback" TransportFeedback Cpp/TransportFeedback Dialect/ZunRtcpTmmb Cpp/Tmmb)
zunrtcp_room(PAYLOAD_FEEDBACK "payload-specific feedback" PayloadFeedback Cpp/PayloadFeedback)
zunrtcp_room(APPLICATION_FEEDBACK "application-layer feedback" ApplicationFeedback Cpp/ApplicationFeedback)
zunrtcp_room(EXTENDED_REPORTS "the blocks of extended reports" Dialect/ZunRtcpXr Cpp/Xr)

if(ZUNRTCP_APPLICATION_FEEDBACK AND NOT ZUNRTCP_PAYLOAD_FEEDBACK)
  message(FATAL_ERROR "Application-layer feedback stands in the envelope of payload-specific feedback: "
                      "ZUNRTCP_PAYLOAD_FEEDBACK=OFF needs ZUNRTCP_APPLICATION_FEEDBACK=OFF as well")
endif()
foreach(needs_all IN ITEMS BUILD_TOOLS BUILD_TESTS BUILD_EXAMPLES BUILD_FUZZERS BUILD_BENCHMARKS DEBIAN_PACKAGES)
  if(ZUNRTCP_${needs_all} AND zunrtcp_rooms_out)
    list(JOIN zunrtcp_rooms_out ", " rooms)
    message(FATAL_ERROR "ZUNRTCP_${needs_all} needs all rooms of kinds, only the library does without; these are OFF: ${rooms}")
  endif()
endforeach()
