# Benches: natively one program of bench/*.cpp with Google Benchmark, for Windows one program a
# source of bench/windows/, a client of the built server, called as bench_NAME.exe SERVER FOLDER
# FILES. bench/run builds and runs them all.

if(WIN32)
  file(GLOB benches CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/bench/windows/*.cpp)
  add_custom_target(benches)
  foreach(source IN LISTS benches)
    get_filename_component(name ${source} NAME_WE)
    string(TOLOWER ${name} name)
    add_executable(bench_${name} ${source})
    target_link_libraries(bench_${name} PRIVATE veldmark_client veldmark_windows psapi version)
    target_link_options(bench_${name} PRIVATE -municode)
    add_dependencies(benches bench_${name})
  endforeach()
  # The file whose messages are read.
  if(TARGET event_texts)
    add_dependencies(bench_messages event_texts)
  endif()
else()
  file(GLOB benches CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/bench/*.cpp)
  if(benches)
    find_package(benchmark REQUIRED)
    add_executable(bench ${benches})
    target_link_libraries(bench PRIVATE veldmark_simulated benchmark::benchmark
                                        benchmark::benchmark_main)
  endif()
endif()
