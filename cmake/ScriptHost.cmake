# The script host of ./run. It reaches the servers as any client does, by automation.

file(GLOB host CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/tools/scripthost/*.cpp)
add_executable(scripthost ${host})
target_compile_options(scripthost PRIVATE -Wall -Wextra -Werror)
target_link_options(scripthost PRIVATE -municode)
target_link_libraries(scripthost PRIVATE ole32 oleaut32 uuid user32)
