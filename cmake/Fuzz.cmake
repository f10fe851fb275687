# Fuzz targets: fuzz/NAME.cpp becomes fuzz_NAME. Its seeds are fuzz/corpus/NAME/, what a run finds
# new goes to a folder of the build tree.

file(GLOB targets CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/fuzz/*.cpp)
foreach(source IN LISTS targets)
  get_filename_component(name ${source} NAME_WE)
  add_executable(fuzz_${name} ${source})
  target_link_libraries(fuzz_${name} PRIVATE veldmark_simulated)
  target_link_options(fuzz_${name} PRIVATE -fsanitize=fuzzer)

  set(found ${PROJECT_BINARY_DIR}/found/${name})
  file(MAKE_DIRECTORY ${found}/inputs ${found}/failures)
  set(seeds ${PROJECT_SOURCE_DIR}/fuzz/corpus/${name})
  if(NOT IS_DIRECTORY ${seeds})
    set(seeds "")
  endif()
  add_test(NAME fuzz.${name}
           COMMAND fuzz_${name} -max_total_time=3 -timeout=10 -rss_limit_mb=2048 -print_final_stats=1
                   -artifact_prefix=${found}/failures/ ${found}/inputs ${seeds})
  set_tests_properties(fuzz.${name} PROPERTIES TIMEOUT 120)
endforeach()
