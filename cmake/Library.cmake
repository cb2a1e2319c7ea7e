# The library, compiled once: ZunRtcp::zunrtcp_static, and ZunRtcp::zunrtcp_shared of the same objects. Users link
# ZunRtcp::zunrtcp, which is one of the two. BUILD_SHARED_LIBS says which is built, and installed; a project of its own
# that is not told builds both.
set(zunrtcp_kinds static)
set(zunrtcp_kind static)
if(BUILD_SHARED_LIBS)
  set(zunrtcp_kinds shared)
  set(zunrtcp_kind shared)
elseif(PROJECT_IS_TOP_LEVEL AND NOT DEFINED BUILD_SHARED_LIBS)
  set(zunrtcp_kinds static shared)
endif()

file(GLOB_RECURSE zunrtcp_sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/Zun/*.cpp)
foreach(part IN LISTS zunrtcp_left_out)
  list(FILTER zunrtcp_sources EXCLUDE REGEX "${part}")
endforeach()
add_library(zunrtcp_static STATIC ${zunrtcp_sources})
# The library needs nothing of the C++ runtime: a C program links it with plain cc.
target_compile_options(zunrtcp_static PRIVATE -fno-exceptions -fno-rtti)
# Who links the static library with -Wl,--gc-sections takes along the functions that he calls, and no others of their files.
target_compile_options(zunrtcp_static PRIVATE -ffunction-sections -fdata-sections)
if(ZUNRTCP_SANITIZERS MATCHES undefined AND CMAKE_CXX_COMPILER_ID MATCHES Clang)
  # clang's check of calls through function pointers does need the C++ runtime.
  target_compile_options(zunrtcp_static PRIVATE -fno-sanitize=function)
endif()
# Of the shared library only what the public headers declare can be seen.
set_target_properties(zunrtcp_static PROPERTIES CXX_VISIBILITY_PRESET hidden)
zunrtcp_warnings(zunrtcp_static)

add_library(zunrtcp_shared SHARED $<TARGET_OBJECTS:zunrtcp_static>)
# Before 1.0 a minor version may break what is compiled against it. Linked as C, it depends on no C++ runtime.
set_target_properties(zunrtcp_shared PROPERTIES VERSION ${PROJECT_VERSION} LINKER_LANGUAGE C
                                                SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR})

foreach(kind static shared)
  add_library(ZunRtcp::zunrtcp_${kind} ALIAS zunrtcp_${kind})
  set_target_properties(zunrtcp_${kind} PROPERTIES OUTPUT_NAME zunrtcp)
  target_include_directories(zunrtcp_${kind} PUBLIC $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}>)
  target_compile_definitions(zunrtcp_${kind} PUBLIC "$<BUILD_INTERFACE:${zunrtcp_room_definitions}>")
  if(NOT kind IN_LIST zunrtcp_kinds)
    set_target_properties(zunrtcp_${kind} PROPERTIES EXCLUDE_FROM_ALL ON)
  endif()
endforeach()
add_library(ZunRtcp::zunrtcp ALIAS zunrtcp_${zunrtcp_kind})
# What is built here along with the library may reach what the shared one hides.
add_library(zunrtcp ALIAS zunrtcp_static)
