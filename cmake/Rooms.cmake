# The libraries of src/, one for each side of the platform seam.

# veldmark_sources(OUT PATTERN...): the sources below the project's folder that match, absolute.
function(veldmark_sources out)
  set(found "")
  foreach(pattern IN LISTS ARGN)
    file(GLOB_RECURSE matches CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/${pattern})
    list(APPEND found ${matches})
  endforeach()
  set(${out} ${found} PARENT_SCOPE)
endfunction()

# veldmark_library(NAME SOURCES...): a static library; an interface while its room is empty.
function(veldmark_library name)
  if(ARGN)
    add_library(${name} STATIC ${ARGN})
    target_link_libraries(${name} PUBLIC veldmark_options)
  else()
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE veldmark_options)
  endif()
endfunction()

# veldmark_uses(NAME LIBRARY...): links for the library and all that link it.
function(veldmark_uses name)
  get_target_property(type ${name} TYPE)
  if(type STREQUAL "INTERFACE_LIBRARY")
    target_link_libraries(${name} INTERFACE ${ARGN})
  else()
    target_link_libraries(${name} PUBLIC ${ARGN})
  endif()
endfunction()

# veldmark_precompile(NAME [OWNER]): precompiles the standard headers, or takes those of a target with
# the same compiler flags.
function(veldmark_precompile name)
  get_target_property(type ${name} TYPE)
  if(type STREQUAL "INTERFACE_LIBRARY")
    return()
  endif()
  if(ARGN)
    target_precompile_headers(${name} REUSE_FROM ${ARGN})
  else()
    target_precompile_headers(${name} PRIVATE ${PROJECT_SOURCE_DIR}/cmake/Precompiled.h)
  endif()
endfunction()

function(veldmark_core_libraries)
  veldmark_sources(core "src/*.cpp")
  list(FILTER core EXCLUDE REGEX
       "/src/(server|platform/windows|platform/simulated|automation/com)/")
  veldmark_library(veldmark_core ${core})
  veldmark_precompile(veldmark_core)

  # The JSON reader is a header library of the host; a link of its own keeps the rest of the
  # host's include folder out of the cross builds.
  add_library(veldmark_json INTERFACE)
  file(MAKE_DIRECTORY ${PROJECT_BINARY_DIR}/include)
  file(CREATE_LINK /usr/include/nlohmann ${PROJECT_BINARY_DIR}/include/nlohmann SYMBOLIC)
  target_include_directories(veldmark_json SYSTEM INTERFACE ${PROJECT_BINARY_DIR}/include)

  veldmark_sources(simulated "src/platform/simulated/*.cpp")
  veldmark_library(veldmark_simulated ${simulated})
  veldmark_precompile(veldmark_simulated veldmark_core)
  veldmark_uses(veldmark_simulated veldmark_core)
  if(simulated)
    target_link_libraries(veldmark_simulated PRIVATE veldmark_json)
  endif()
endfunction()

# Writes the interface definition, the reference and the manifest out of the member tables;
# `renew_model` puts all three into the checkout.
function(veldmark_model_generator)
  veldmark_sources(model "model/*.cpp")
  list(REMOVE_ITEM model ${PROJECT_SOURCE_DIR}/model/main.cpp)
  veldmark_library(veldmark_model ${model})
  veldmark_precompile(veldmark_model veldmark_core)
  veldmark_uses(veldmark_model veldmark_core)
  target_include_directories(veldmark_model PUBLIC ${PROJECT_SOURCE_DIR})

  add_executable(generate_model ${PROJECT_SOURCE_DIR}/model/main.cpp)
  target_link_libraries(generate_model PRIVATE veldmark_model)
  add_custom_target(
    renew_model
    # Not written in place: a run that fails leaves the checkout as it is.
    COMMAND generate_model --idl > Veldmark2.idl
    COMMAND generate_model --reference > reference.md
    COMMAND generate_model --manifest > Veldmark2.manifest
    COMMAND ${CMAKE_COMMAND} -E copy Veldmark2.idl ${PROJECT_SOURCE_DIR}/model/Veldmark2.idl
    COMMAND ${CMAKE_COMMAND} -E copy reference.md ${PROJECT_SOURCE_DIR}/docs/reference.md
    COMMAND ${CMAKE_COMMAND} -E make_directory ${PROJECT_SOURCE_DIR}/examples/unregistered
    COMMAND ${CMAKE_COMMAND} -E copy Veldmark2.manifest
            ${PROJECT_SOURCE_DIR}/examples/unregistered/Veldmark2.manifest
    WORKING_DIRECTORY ${PROJECT_BINARY_DIR}
    COMMENT "Renewing model/Veldmark2.idl, docs/reference.md and the manifest"
    VERBATIM)
endfunction()
