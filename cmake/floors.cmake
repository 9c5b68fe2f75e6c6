# The house has floors: one static library per folder under src/, linked to lower ones only.

add_library(forum_warnings INTERFACE)
target_compile_options(forum_warnings INTERFACE -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror)

if(FORUM_SANITIZE)
  add_compile_options(-fsanitize=address,undefined -fno-sanitize-recover=all -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(FORUM_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()

# add_floor(<folder> [USES <lower floors>] FILES <sources>)
# A folder a/b makes the library forum_a_b.
function(add_floor folder)
  cmake_parse_arguments(FLOOR "" "" "USES;FILES" ${ARGN})
  string(REPLACE "/" "_" name ${folder})
  list(TRANSFORM FLOOR_USES PREPEND "forum_")
  add_library(forum_${name} STATIC ${FLOOR_FILES})
  target_include_directories(forum_${name} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  target_link_libraries(forum_${name} PUBLIC ${FLOOR_USES} PRIVATE forum_warnings)
endfunction()

# add_floor_test(<folder> [USES <floors>] FILES <sources>): one test program per floor. USES must
# name a sub-folder's library as folder_ui.
function(add_floor_test folder)
  cmake_parse_arguments(FLOOR "" "" "USES;FILES" ${ARGN})
  string(REPLACE "/" "_" name ${folder})
  list(TRANSFORM FLOOR_USES PREPEND "forum_")
  add_executable(${name}_test ${FLOOR_FILES})
  target_include_directories(${name}_test PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name}_test PRIVATE ${FLOOR_USES} GTest::gmock GTest::gtest_main forum_warnings)
  gtest_discover_tests(${name}_test DISCOVERY_TIMEOUT 60 PROPERTIES TIMEOUT 300)
endfunction()
