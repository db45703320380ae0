# How every library of the tree is built: C++20, all warnings are errors.

# What was compiled once is taken from there again, where ccache is installed; also for a checkout in
# another directory, and for the tests with their precompiled headers.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER
      env CCACHE_BASEDIR=${CMAKE_SOURCE_DIR} CCACHE_NOHASHDIR=1 CCACHE_DEPEND=1
      CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()

add_library(td_flags INTERFACE)
target_compile_features(td_flags INTERFACE cxx_std_20)
target_compile_options(td_flags INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                                          -Werror)
target_include_directories(td_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_definitions(td_flags INTERFACE _FILE_OFFSET_BITS=64 TD_VERSION="${PROJECT_VERSION}")
target_link_libraries(td_flags INTERFACE Threads::Threads)
find_program(LLD ld.lld)
if(LLD)
  target_link_options(td_flags INTERFACE -fuse-ld=lld)
endif()
if(CMAKE_BUILD_TYPE STREQUAL Release)
  target_compile_options(td_flags INTERFACE -fstack-protector-strong)
  # Fortified calls need an optimising compiler; tests are built without.
  target_compile_definitions(td_flags INTERFACE $<$<NOT:$<BOOL:$<TARGET_PROPERTY:TD_TEST>>>:_FORTIFY_SOURCE=2>)
else()
  target_compile_definitions(td_flags INTERFACE _GLIBCXX_ASSERTIONS)
endif()
if(TD_SANITIZE)
  # Line tables are all that a report needs.
  target_compile_options(td_flags INTERFACE -fsanitize=${TD_SANITIZE} -fno-omit-frame-pointer -g1)
  target_link_options(td_flags INTERFACE -fsanitize=${TD_SANITIZE})
  target_compile_definitions(td_flags INTERFACE TD_SANITIZED)
endif()

# td_precompile(TARGET OWNER HEADER...): TARGET reads the headers from one precompiled file, which OWNER
# makes. For tests, and for sources only where another build goes without: that one shows what a source
# fails to include itself.
function(td_precompile target owner)
  if(target STREQUAL owner)
    target_precompile_headers(${target} PRIVATE ${ARGN})
  else()
    target_precompile_headers(${target} REUSE_FROM ${owner})
  endif()
endfunction()

# td_for_tests(TARGET): code of the tests. Compiling it is the longest part of every build, and none of it
# is measured.
function(td_for_tests target)
  set_target_properties(${target} PROPERTIES TD_TEST ON)
  target_compile_options(${target} PRIVATE -O0)
  td_precompile(${target} td_support <gtest/gtest.h> <algorithm> <atomic> <filesystem> <functional> <map>
                <memory> <mutex> <optional> <string> <thread> <vector>)
endfunction()

# td_library(NAME DEPENDS ... [FOR_TESTS]): the folder NAME as one static library, above the folders that
# it names. The target of a folder inside a folder, as in panels/model, is td_panels_model.
function(td_library name)
  cmake_parse_arguments(ARG "FOR_TESTS" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT sources)
    message(FATAL_ERROR "${CMAKE_CURRENT_SOURCE_DIR}/${name} has no sources")
  endif()
  list(TRANSFORM ARG_DEPENDS PREPEND td_)
  string(REPLACE / _ targets "td_${name};${ARG_DEPENDS}")
  list(POP_FRONT targets target)
  add_library(${target} STATIC ${sources})
  target_link_libraries(${target} PUBLIC td_flags ${targets})
  if(ARG_FOR_TESTS)
    td_for_tests(${target})
  elseif(TD_SANITIZE)
    # The tests of it run several times as long without.
    target_compile_options(${target} PRIVATE -O1)
    set(owner td_foundation)
    if(target STREQUAL td_console)
      set(owner td_console)  # the toolkit's flags are not those of the others
    endif()
    td_precompile(${target} ${owner} <algorithm> <array> <atomic> <functional> <map> <memory> <mutex>
                  <optional> <string> <unordered_map> <utility> <vector>)
  endif()
endfunction()

# td_test(NAME DEPENDS ... [SHARDS n | APART]): one test program of every *.cpp below tests/NAME. It runs
# as one process, which has its display to begin only once, or as n side by side. Of a suite APART, which
# looks at a state that a process keeps, each test is a process of its own. Its sources are compiled ten at a
# time, in half of the time, so their names must not meet; of a warning that holds for included sources
# alone there is nothing to hear.
function(td_test name)
  cmake_parse_arguments(ARG "APART" "SHARDS" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT sources)
    message(FATAL_ERROR "${CMAKE_CURRENT_SOURCE_DIR}/${name} has no sources")
  endif()
  add_executable(test_${name} ${sources})
  td_for_tests(test_${name})
  set_target_properties(test_${name} PROPERTIES UNITY_BUILD ${TD_TEST_BATCHES} UNITY_BUILD_BATCH_SIZE 10)
  target_compile_options(test_${name} PRIVATE $<$<CXX_COMPILER_ID:GNU>:-Wno-subobject-linkage>)
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  target_link_libraries(test_${name} PRIVATE ${ARG_DEPENDS} GTest::gtest)
  # Each sanitizer is told of what the toolkit's own libraries do.
  set(support ${CMAKE_SOURCE_DIR}/tests/support)
  if(TD_SANITIZE MATCHES thread)
    set(environment "TSAN_OPTIONS=suppressions=${support}/tsan.supp:print_suppressions=0")
  else()
    set(environment "LSAN_OPTIONS=suppressions=${support}/lsan.supp:print_suppressions=0")
  endif()
  if(NOT ARG_APART)
    set(shards 1)
    if(ARG_SHARDS)
      set(shards ${ARG_SHARDS})
    endif()
    foreach(shard RANGE 1 ${shards})
      set(test ${name}.All)
      if(shards GREATER 1)
        set(test ${name}.Part${shard})
      endif()
      math(EXPR index "${shard} - 1")
      add_test(NAME ${test} COMMAND test_${name} --gtest_brief=1
               WORKING_DIRECTORY ${CMAKE_BINARY_DIR})
      # A test that is left out inside would not be seen from outside.
      set_tests_properties(${test} PROPERTIES TIMEOUT 900 COST 1000 LABELS ${name}
        ENVIRONMENT "${environment};GTEST_TOTAL_SHARDS=${shards};GTEST_SHARD_INDEX=${index}"
        FAIL_REGULAR_EXPRESSION "SKIPPED")
    endforeach()
    return()
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60 WORKING_DIRECTORY ${CMAKE_BINARY_DIR}
                       PROPERTIES TIMEOUT 120 LABELS ${name} ENVIRONMENT ${environment})
endfunction()
