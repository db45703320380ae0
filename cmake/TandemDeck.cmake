# How every library of the tree is built: C++20, all warnings are errors.

add_library(td_flags INTERFACE)
target_compile_features(td_flags INTERFACE cxx_std_20)
target_compile_options(td_flags INTERFACE -Wall -Wextra -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
                                          -Werror)
target_include_directories(td_flags INTERFACE ${CMAKE_SOURCE_DIR}/src)
target_compile_definitions(td_flags INTERFACE _FILE_OFFSET_BITS=64 TD_VERSION="${PROJECT_VERSION}")
target_link_libraries(td_flags INTERFACE Threads::Threads)
if(TD_SANITIZE)
  target_compile_options(td_flags INTERFACE -fsanitize=${TD_SANITIZE} -fno-omit-frame-pointer)
  target_link_options(td_flags INTERFACE -fsanitize=${TD_SANITIZE})
endif()

# td_library(NAME SOURCES ... DEPENDS ...): one static library of this folder's sources.
function(td_library name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS" ${ARGN})
  set(sources "")
  foreach(source ${ARG_SOURCES})
    get_filename_component(path ${source} ABSOLUTE)
    if(EXISTS ${path})
      list(APPEND sources ${path})
    endif()
  endforeach()
  if(NOT sources)
    add_library(${name} INTERFACE)
    target_link_libraries(${name} INTERFACE td_flags ${ARG_DEPENDS})
    return()
  endif()
  add_library(${name} STATIC ${sources})
  target_link_libraries(${name} PUBLIC td_flags ${ARG_DEPENDS})
endfunction()

# td_test(NAME DEPENDS ...): one test program of every *_test.cpp below tests/NAME; each test is a
# process of its own.
function(td_test name)
  cmake_parse_arguments(ARG "" "" "DEPENDS" ${ARGN})
  file(GLOB sources CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/${name}/*.cpp)
  if(NOT sources)
    return()
  endif()
  add_executable(test_${name} ${sources})
  target_include_directories(test_${name} PRIVATE ${CMAKE_SOURCE_DIR}/tests)
  # Optimised concatenations of std::string make this compiler's versions of these warnings see overlaps
  # and sizes that can't be.
  target_compile_options(test_${name} PRIVATE -Wno-restrict -Wno-stringop-overflow
                                             -Wno-array-bounds)
  target_link_libraries(test_${name} PRIVATE ${ARG_DEPENDS} GTest::gtest)
  target_precompile_headers(test_${name} PRIVATE <gtest/gtest.h> <string> <vector>)
  # Each sanitizer is told of what the toolkit's own libraries do.
  set(support ${CMAKE_SOURCE_DIR}/tests/support)
  if(TD_SANITIZE MATCHES thread)
    set(environment "TSAN_OPTIONS=suppressions=${support}/tsan.supp:print_suppressions=0")
  else()
    set(environment "LSAN_OPTIONS=suppressions=${support}/lsan.supp:print_suppressions=0")
  endif()
  gtest_discover_tests(test_${name} TEST_PREFIX ${name}. DISCOVERY_TIMEOUT 60
                       PROPERTIES TIMEOUT 120 LABELS ${name} ENVIRONMENT ${environment})
endfunction()
