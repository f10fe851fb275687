# The Windows platform, the COM face and the two servers.
#
# Veldmark2.dll works on the real platform, Veldmark2Sandbox.dll on a simulated estate. Both are
# the sources of src/server/, except that each takes its platform from a source of its own:
# WindowsPlatform.cpp or SandboxPlatform.cpp.

function(veldmark_windows_libraries)
  veldmark_sources(windows "src/platform/windows/*.cpp")
  veldmark_library(veldmark_windows ${windows})
  veldmark_precompile(veldmark_windows)
  if(windows)
    # Our records and the SDK's have one layout under two names.
    target_compile_options(veldmark_windows PRIVATE -fno-strict-aliasing)
  endif()
  veldmark_uses(
    veldmark_windows
    veldmark_core
    advapi32 netapi32 mpr ws2_32 winspool version winmm ole32 oleaut32 uuid user32 kernel32)

  veldmark_sources(com "src/automation/com/*.cpp")
  veldmark_library(veldmark_com ${com})
  veldmark_precompile(veldmark_com veldmark_windows)
  if(com)
    target_compile_options(veldmark_com PRIVATE -fno-strict-aliasing)
  endif()
  veldmark_uses(veldmark_com veldmark_core ole32 oleaut32 uuid)
  # And the other way: the core's early-bound entries and its thread slot stand there.
  veldmark_uses(veldmark_core veldmark_com)
endfunction()

# veldmark_type_library(): compiles model/Veldmark2.idl to ${PROJECT_BINARY_DIR}/Veldmark2.tlb.
function(veldmark_type_library)
  # Host packages hold both files: libwine-dev the imported definitions, libwine the standard
  # type library that every automation type library refers to.
  find_path(VELDMARK_IDL_INCLUDE oaidl.idl
            PATHS /usr/include/wine/wine/windows /usr/include/wine/windows
            NO_CMAKE_FIND_ROOT_PATH NO_DEFAULT_PATH REQUIRED)
  find_path(VELDMARK_STDOLE stdole2.tlb
            PATHS /usr/lib/x86_64-linux-gnu/wine/x86_64-windows
                  /usr/lib/i386-linux-gnu/wine/i386-windows
            NO_CMAKE_FIND_ROOT_PATH NO_DEFAULT_PATH REQUIRED)
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(VELDMARK_WIDL_BITS --win64 CACHE INTERNAL "")
  else()
    set(VELDMARK_WIDL_BITS --win32 CACHE INTERNAL "")
  endif()
  find_program(VELDMARK_WIDL x86_64-w64-mingw32-widl REQUIRED)
  set(idl ${PROJECT_SOURCE_DIR}/model/Veldmark2.idl)
  set(tlb ${PROJECT_BINARY_DIR}/Veldmark2.tlb)
  add_custom_command(
    OUTPUT ${tlb}
    COMMAND ${VELDMARK_WIDL} -t ${VELDMARK_WIDL_BITS} -I ${VELDMARK_IDL_INCLUDE} -L ${VELDMARK_STDOLE}
            -o ${tlb} ${idl}
    DEPENDS ${idl}
    COMMENT "Compiling the type library"
    VERBATIM)
  add_custom_target(veldmark_tlb DEPENDS ${tlb})
endfunction()

# veldmark_client: the header of early-bound clients, Veldmark2_h.h, and the identifiers it declares.
function(veldmark_client_library)
  set(idl ${PROJECT_SOURCE_DIR}/model/Veldmark2.idl)
  set(header ${PROJECT_BINARY_DIR}/client/Veldmark2_h.h)
  set(guids ${PROJECT_BINARY_DIR}/client/Veldmark2_i.c)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/client)
  set(widl ${VELDMARK_WIDL} ${VELDMARK_WIDL_BITS} -I ${VELDMARK_IDL_INCLUDE} -L ${VELDMARK_STDOLE})
  add_custom_command(
    OUTPUT ${header} ${guids}
    COMMAND ${widl} -h -o ${header} ${idl}
    COMMAND ${widl} -u -o ${guids} ${idl}
    DEPENDS ${idl}
    COMMENT "Making the clients' header"
    VERBATIM)
  add_custom_target(veldmark_client_header DEPENDS ${header})
  add_library(veldmark_client STATIC ${guids})
  add_dependencies(veldmark_client veldmark_client_header)
  target_include_directories(veldmark_client SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/client)
  target_link_libraries(veldmark_client INTERFACE ole32 oleaut32 uuid)
endfunction()

function(veldmark_dll name platform_source)
  if(NOT EXISTS ${platform_source})
    return()
  endif()
  add_library(${name} SHARED ${platform_source} $<TARGET_OBJECTS:veldmark_server_objects>)
  set_target_properties(${name} PROPERTIES PREFIX "")
  target_link_libraries(${name} PRIVATE veldmark_com ${ARGN})
  target_compile_options(${name} PRIVATE $<$<COMPILE_LANGUAGE:CXX>:-fno-strict-aliasing>)
  set(def ${PROJECT_SOURCE_DIR}/src/server/Veldmark2.def)
  if(EXISTS ${def})
    target_sources(${name} PRIVATE ${def})
  endif()
  set(rc ${PROJECT_SOURCE_DIR}/src/server/Veldmark2.rc)
  if(EXISTS ${rc} AND TARGET veldmark_tlb)
    target_sources(${name} PRIVATE ${rc})
    set_source_files_properties(${rc} PROPERTIES OBJECT_DEPENDS ${PROJECT_BINARY_DIR}/Veldmark2.tlb)
    # The resource compiler must find Veldmark2.tlb, and learns here which of the two it makes.
    target_include_directories(${name} PRIVATE ${PROJECT_BINARY_DIR})
    if(name STREQUAL "Veldmark2Sandbox")
      target_compile_definitions(${name} PRIVATE $<$<COMPILE_LANGUAGE:RC>:VELDMARK_SANDBOX>)
    endif()
    add_dependencies(${name} veldmark_tlb)
  endif()
endfunction()

function(veldmark_server)
  if(EXISTS ${PROJECT_SOURCE_DIR}/model/Veldmark2.idl)
    veldmark_type_library()
    veldmark_client_library()
    enable_language(RC)
  endif()
  set(server ${PROJECT_SOURCE_DIR}/src/server)
  veldmark_sources(common "src/server/*.cpp")
  list(REMOVE_ITEM common ${server}/WindowsPlatform.cpp ${server}/SandboxPlatform.cpp)
  if(NOT common)
    return()
  endif()
  add_library(veldmark_server_objects OBJECT ${common})
  target_link_libraries(veldmark_server_objects PUBLIC veldmark_com)
  target_compile_options(veldmark_server_objects PRIVATE -fno-strict-aliasing)
  veldmark_precompile(veldmark_server_objects veldmark_windows)

  veldmark_dll(Veldmark2 ${server}/WindowsPlatform.cpp veldmark_windows)
  veldmark_dll(Veldmark2Sandbox ${server}/SandboxPlatform.cpp veldmark_simulated veldmark_windows)
endfunction()

# The early-bound sample client.
function(veldmark_sample_client)
  if(NOT TARGET veldmark_client)
    return()
  endif()
  # main.cpp becomes "client", any other sample has the name of its source.
  file(GLOB sources CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/examples/client/*.cpp)
  foreach(source IN LISTS sources)
    get_filename_component(name ${source} NAME_WE)
    string(REGEX REPLACE "^main$" "client" name ${name})
    add_executable(${name} ${source})
    target_compile_options(${name} PRIVATE -Wall -Wextra -Werror)
    target_link_options(${name} PRIVATE -municode)
    target_link_libraries(${name} PRIVATE veldmark_client)
  endforeach()
endfunction()

# What a script run on each of the servers needs, and the look into what was built.
function(veldmark_runtime)
  add_custom_target(runtime_real DEPENDS scripthost)
  add_custom_target(runtime_sandbox DEPENDS scripthost)
  if(TARGET Veldmark2)
    add_dependencies(runtime_real Veldmark2)
  endif()
  if(TARGET Veldmark2Sandbox)
    add_dependencies(runtime_sandbox Veldmark2Sandbox)
  endif()
  if(CMAKE_SIZEOF_VOID_P EQUAL 8)
    set(bits x64)
  else()
    set(bits x86)
  endif()
  foreach(dll Veldmark2 Veldmark2Sandbox)
    if(TARGET ${dll})
      add_test(NAME server.${bits}.${dll}
               COMMAND ${PROJECT_SOURCE_DIR}/cmake/check-server ${CMAKE_OBJDUMP}
                       $<TARGET_FILE:${dll}>)
    endif()
  endforeach()
endfunction()
