# vldv_folder(name [APART] MAY_USE folders... SOURCES files... [LIBRARIES packages...])
#
# One folder of src/ as a link target; one below another has both names, with a stroke between. MAY_USE names every
# folder whose headers it may include, each on a lower floor of docs/architecture.md; what is missing there is a link error
# of its tests, and scripts/check_includes.py reads the same list to check the headers. The objects of all folders that do not stand
# APART make libvldv.so.
function(vldv_folder name)
  cmake_parse_arguments(FOLDER "APART" "" "MAY_USE;SOURCES;LIBRARIES;PCH" ${ARGN})
  string(REPLACE "/" "_" target vldv_${name})
  add_library(${target} STATIC ${FOLDER_SOURCES})
  set_target_properties(${target} PROPERTIES LINKER_LANGUAGE CXX)
  target_include_directories(${target} PUBLIC ${PROJECT_SOURCE_DIR}/src)
  foreach(used IN LISTS FOLDER_MAY_USE)
    string(REPLACE "/" "_" used ${used})
    target_link_libraries(${target} PUBLIC vldv_${used})
  endforeach()
  target_link_libraries(${target} PRIVATE ${FOLDER_LIBRARIES})
  if(NOT FOLDER_APART)
    set_property(GLOBAL APPEND PROPERTY VLDV_LIBRARY_FOLDERS ${target})
    set_property(GLOBAL APPEND PROPERTY VLDV_LIBRARY_PACKAGES ${FOLDER_LIBRARIES})
  endif()
  # Headers that all have are read once where tests are built as well: that is done again and again. What a user builds has
  # none, and shows whether each source includes what it uses.
  if(VLDV_TESTS AND NOT VLDV_FUZZ)
    get_property(precompiled GLOBAL PROPERTY VLDV_PRECOMPILED)
    if(precompiled AND NOT FOLDER_APART)
      target_precompile_headers(${target} REUSE_FROM ${precompiled})
    else()
      target_precompile_headers(${target} PRIVATE <algorithm> <array> <cmath> <cstdint> <functional> <map> <memory>
        <optional> <set> <span> <string> <string_view> <utility> <vector> ${FOLDER_PCH})
    endif()
    if(NOT precompiled AND NOT FOLDER_APART)
      set_property(GLOBAL PROPERTY VLDV_PRECOMPILED ${target})
    endif()
  endif()
endfunction()

# vldv_kernels(name stem sets...)
#
# Sources of kernels of a folder, `stem`_`set`.cpp, each compiled for its instruction set: plain for every machine, the
# others where there are such. What is allowed here is what primitives/cpu.h asks the processor for.
function(vldv_kernels name stem)
  string(REPLACE "/" "_" target vldv_${name})
  set(avx2 -mavx2)
  set(avx512 -mavx512f -mavx512bw -mavx512vl -mavx512dq -mprefer-vector-width=512)
  set(vbmi ${avx512} -mavx512vbmi)
  # Vectors are only passed inside of a source.
  set(quiet -Wno-psabi)
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # The intrinsics of GCC 12 themselves start from a register that is left undefined on purpose.
    list(APPEND quiet -Wno-maybe-uninitialized -Wno-uninitialized)
  endif()
  foreach(set IN LISTS ARGN)
    if(set STREQUAL "plain" OR CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64")
      target_sources(${target} PRIVATE ${stem}_${set}.cpp)
      set_source_files_properties(${stem}_${set}.cpp PROPERTIES COMPILE_OPTIONS "${${set}};${quiet}"
        SKIP_PRECOMPILE_HEADERS ON)
    endif()
  endforeach()
endfunction()

# What every test includes, read once for all test programs.
function(vldv_test_options target)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  # What is tested runs as it is built; the tests themselves are compiled in half the time without optimisation and
  # debug information, since a failed expectation tells its line by itself. Qt wants position independent code, and what is
  # precompiled must agree in that.
  target_compile_options(${target} PRIVATE -fPIC -O0 -g0 -include ${PROJECT_SOURCE_DIR}/tests/support/own_names.h)
  target_link_libraries(${target} PRIVATE GTest::gmock GTest::gtest_main)
endfunction()

# vldv_test(name FOLDERS folders... SOURCES files... [LIBRARIES packages...] [PCH headers...])
#
# One test program a folder; every TEST in it becomes a test of ctest. PCH names large headers that most of its sources
# include.
function(vldv_test name)
  cmake_parse_arguments(TEST "" "" "FOLDERS;SOURCES;LIBRARIES;PCH" ${ARGN})
  set(common <gtest/gtest.h> <gmock/gmock.h>)
  if(NOT TARGET precompiled_tests)
    file(WRITE ${PROJECT_BINARY_DIR}/precompiled_tests.cpp "")
    add_executable(precompiled_tests ${PROJECT_BINARY_DIR}/precompiled_tests.cpp)
    vldv_test_options(precompiled_tests)
    target_precompile_headers(precompiled_tests PRIVATE ${common})
  endif()
  add_executable(test_${name} ${TEST_SOURCES})
  vldv_test_options(test_${name})
  if(TEST_PCH)
    target_precompile_headers(test_${name} PRIVATE ${common} ${TEST_PCH})
  else()
    target_precompile_headers(test_${name} REUSE_FROM precompiled_tests)
  endif()
  foreach(used IN LISTS TEST_FOLDERS)
    string(REPLACE "/" "_" used ${used})
    target_link_libraries(test_${name} PRIVATE vldv_${used})
  endforeach()
  target_link_libraries(test_${name} PRIVATE ${TEST_LIBRARIES})
  target_compile_definitions(test_${name} PRIVATE
    VLDV_TEST_DATA="${CMAKE_CURRENT_SOURCE_DIR}/data"
    VLDV_SAMPLES="${VLDV_SAMPLES}")
  gtest_discover_tests(test_${name} PROPERTIES LABELS ${name} DISCOVERY_MODE PRE_TEST DISCOVERY_TIMEOUT 60)
endfunction()
