# Test programs: one a folder of tests/.
#
# Natively every folder but the ones below is built. For Windows, tests/contract and
# tests/windows are, and run under Wine. tests/support is shared by all of them.

if(WIN32)
  # The host's GoogleTest is no use here; Debian ships its sources for this purpose.
  set(INSTALL_GTEST OFF CACHE BOOL "" FORCE)
  set(gtest_force_shared_crt ON CACHE BOOL "" FORCE)
  add_subdirectory(/usr/src/googletest ${PROJECT_BINARY_DIR}/googletest EXCLUDE_FROM_ALL SYSTEM)
  add_library(veldmark_gtest INTERFACE)
  target_link_libraries(veldmark_gtest INTERFACE gtest gmock gmock_main)
else()
  find_package(GTest REQUIRED)
  add_library(veldmark_gtest INTERFACE)
  target_link_libraries(veldmark_gtest INTERFACE GTest::gmock GTest::gtest GTest::gmock_main)
endif()
include(GoogleTest)

veldmark_sources(support "tests/support/*.cpp")
veldmark_library(veldmark_test_support ${support})
veldmark_uses(veldmark_test_support veldmark_simulated veldmark_gtest)
if(WIN32)
  veldmark_uses(veldmark_test_support veldmark_windows)
else()
  veldmark_uses(veldmark_test_support veldmark_model)
endif()

# veldmark_test(NAME LIBRARIES SOURCES): a test program whose cases become tests "NAME.Suite.Case".
function(veldmark_test name libraries sources)
  add_executable(${name} ${sources})
  target_link_libraries(${name} PRIVATE veldmark_test_support ${libraries})
  target_include_directories(${name} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_compile_definitions(${name} PRIVATE VELDMARK_SOURCE_DIR="${PROJECT_SOURCE_DIR}"
                                             VELDMARK_BINARY_DIR="${PROJECT_BINARY_DIR}")
  get_property(first GLOBAL PROPERTY VELDMARK_FIRST_TEST)
  if(first)
    target_precompile_headers(${name} REUSE_FROM ${first})
  else()
    target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/Precompiled.h
                              <gtest/gtest.h> <gmock/gmock.h>)
    set_property(GLOBAL PROPERTY VELDMARK_FIRST_TEST ${name})
  endif()
  if(WIN32)
    target_compile_options(${name} PRIVATE -fno-strict-aliasing)
    set(prefix "windows.${name}.")
    if(CMAKE_SIZEOF_VOID_P EQUAL 4)
      set(prefix "windows-x86.${name}.")
    endif()
    # They share a computer: its services, tasks and registry keys.
    set(lock RESOURCE_LOCK ${prefix})
  else()
    set(prefix "${name}.")
  endif()
  # Discovery waits for the test run, since the build must do without Wine.
  gtest_discover_tests(${name} TEST_PREFIX ${prefix} NO_PRETTY_VALUES DISCOVERY_MODE PRE_TEST
                       DISCOVERY_TIMEOUT 120 PROPERTIES TIMEOUT 300 ${lock})
endfunction()

# veldmark_message_file(NAME SOURCE): NAME.dll, which has a message table and no code.
function(veldmark_message_file name source)
  set(dll ${PROJECT_BINARY_DIR}/${name}.dll)
  set(folder ${PROJECT_BINARY_DIR}/${name})
  get_filename_component(script ${source} NAME_WE)
  string(REPLACE windres windmc VELDMARK_WINDMC ${CMAKE_RC_COMPILER})
  file(MAKE_DIRECTORY ${folder})
  add_custom_command(
    OUTPUT ${dll}
    COMMAND ${VELDMARK_WINDMC} -U -r ${folder} -h ${folder} ${source}
    COMMAND ${CMAKE_RC_COMPILER} -I ${folder} ${folder}/${script}.rc -O coff ${folder}/${script}.o
    COMMAND ${CMAKE_CXX_COMPILER} -shared -nostdlib -Wl,-e,0 -o ${dll} ${folder}/${script}.o
    DEPENDS ${source}
    COMMENT "Compiling ${name}.dll"
    VERBATIM)
  add_custom_target(${name} DEPENDS ${dll})
endfunction()

set(tests ${PROJECT_SOURCE_DIR}/tests)
if(WIN32)
  # A service that tests install; scripts find it in the build tree.
  add_executable(service_program ${tests}/windows/service_program.cpp)
  target_link_libraries(service_program PRIVATE advapi32)
  target_link_options(service_program PRIVATE -municode)
  add_dependencies(runtime_real service_program)

  veldmark_sources(contract "tests/contract/*.cpp")
  list(REMOVE_ITEM contract ${tests}/contract/SimulatedWorld.cpp)
  if(EXISTS ${tests}/contract/WindowsWorld.cpp)
    veldmark_test(contract_tests "" "${contract}")
    veldmark_message_file(event_texts ${tests}/contract/EventTexts.mc)
    add_dependencies(contract_tests event_texts)
    add_dependencies(contract_tests service_program)
  endif()
  veldmark_sources(windows "tests/windows/*.cpp")
  list(REMOVE_ITEM windows ${tests}/windows/service_program.cpp)
  if(windows)
    veldmark_test(windows_tests "veldmark_com" "${windows}")
    foreach(dll Veldmark2 Veldmark2Sandbox event_texts)
      if(TARGET ${dll})
        add_dependencies(windows_tests ${dll})
      endif()
    endforeach()
    if(TARGET veldmark_client)
      target_link_libraries(windows_tests PRIVATE veldmark_client)
    endif()
  endif()

  # Automation scripts with the output that they must have; see tests/scripts/check.
  file(GLOB scripts CONFIGURE_DEPENDS ${tests}/scripts/*.vbs ${tests}/scripts/*.js)
  # An output without a script beside it is that of a sample.
  file(GLOB outputs CONFIGURE_DEPENDS ${tests}/scripts/*.sandbox.out)
  foreach(output IN LISTS outputs)
    get_filename_component(name ${output} NAME_WLE)
    if(NOT EXISTS ${tests}/scripts/${name}.vbs)
      list(APPEND scripts ${tests}/scripts/${name}.vbs)
    endif()
  endforeach()
  if(CMAKE_SIZEOF_VOID_P EQUAL 4)
    # Without those on an estate, which would need a prefix more.
    list(FILTER scripts EXCLUDE REGEX "\\.sandbox\\.")
    set(prefix script-x86.)
    set(bits --x86)
  else()
    set(prefix script.)
    set(bits "")

    # What the tour shows is the computer's affair, but not that it comes to its end.
    add_test(NAME script.tour COMMAND ${PROJECT_SOURCE_DIR}/run)
    add_test(NAME script.tour.sandbox COMMAND ${PROJECT_SOURCE_DIR}/run --sandbox)
    set_tests_properties(script.tour script.tour.sandbox PROPERTIES TIMEOUT 120)

    add_test(NAME script.a_lost_output_is_a_failure
             COMMAND sh -c "\"$0\" \"$1\" >/dev/full || echo status $?"
                     ${PROJECT_SOURCE_DIR}/run ${tests}/scripts/model.vbs)
    set_tests_properties(script.a_lost_output_is_a_failure
                         PROPERTIES PASS_REGULAR_EXPRESSION "could not be written.*status 1")

    if(TARGET client)
      string(REPLACE "/" "\\" examples "Z:${PROJECT_SOURCE_DIR}/examples")
      add_test(NAME windows.client.lists_a_folder COMMAND client ${examples})
      set_tests_properties(windows.client.lists_a_folder PROPERTIES PASS_REGULAR_EXPRESSION
                                                                    "tour.vbs")
    endif()
  endif()
  foreach(script IN LISTS scripts)
    get_filename_component(name ${script} NAME_WLE)
    add_test(NAME ${prefix}${name} COMMAND ${tests}/scripts/check ${bits} ${script})
    set_tests_properties(${prefix}${name} PROPERTIES TIMEOUT 120)
  endforeach()
else()
  file(GLOB rooms CONFIGURE_DEPENDS LIST_DIRECTORIES true RELATIVE ${tests} ${tests}/*)
  foreach(room IN LISTS rooms)
    if(NOT IS_DIRECTORY ${tests}/${room} OR room MATCHES "^(support|scripts|windows)$")
      continue()
    endif()
    veldmark_sources(sources "tests/${room}/*.cpp")
    list(REMOVE_ITEM sources ${tests}/contract/WindowsWorld.cpp)
    set(libraries "")
    if(room STREQUAL "model")
      set(libraries veldmark_model)
    endif()
    if(sources)
      veldmark_test(${room}_tests "${libraries}" "${sources}")
    endif()
  endforeach()
  add_test(NAME sources_are_formatted
           COMMAND ${PROJECT_SOURCE_DIR}/cmake/check-format ${PROJECT_SOURCE_DIR})
  add_test(NAME sources_stand_in_order
           COMMAND ${PROJECT_SOURCE_DIR}/cmake/check-order ${PROJECT_SOURCE_DIR})
endif()
