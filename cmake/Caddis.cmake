# The project's own build vocabulary. A folder's CMakeLists.txt is one caddis_module call.

# caddis_module(markup SOURCES A.cpp B.cpp DEPENDS text foundation LIBRARIES ICU::uc)
#
# One static library per source folder, known to the rest of the build as caddis::markup.
# DEPENDS is the layering: a folder may include headers of the folders it depends on (and of those that they
# depend on), and no others. The `layering` test reads these lines.
function(caddis_module name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
  set(target caddis_${name})
  file(GLOB headers CONFIGURE_DEPENDS ${CMAKE_CURRENT_SOURCE_DIR}/*.h)
  add_library(${target} STATIC ${ARG_SOURCES})
  add_library(caddis::${name} ALIAS ${target})
  target_sources(${target} PUBLIC FILE_SET HEADERS BASE_DIRS ${PROJECT_SOURCE_DIR}/src FILES ${headers})
  list(TRANSFORM ARG_DEPENDS PREPEND caddis::)
  target_link_libraries(${target} PUBLIC ${ARG_DEPENDS} PRIVATE ${ARG_LIBRARIES} caddis::warnings)
endfunction()

# caddis_shared_module(pdf_engine FILE caddis-pdf SOURCES A.cpp DEPENDS pdf LIBRARIES PkgConfig::poppler)
#
# A folder built as caddis-pdf.so, which a program opens on first use (platform/modules): what it links is not
# linked into the program. Tests and fuzz targets that open it name it under MODULES.
function(caddis_shared_module name)
  cmake_parse_arguments(ARG "" "FILE" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
  set(target caddis_${name})
  add_library(${target} MODULE ${ARG_SOURCES})
  list(TRANSFORM ARG_DEPENDS PREPEND caddis::)
  target_link_libraries(${target} PRIVATE ${ARG_DEPENDS} ${ARG_LIBRARIES} caddis::warnings)
  set_target_properties(
    ${target}
    PROPERTIES PREFIX "" OUTPUT_NAME ${ARG_FILE} VISIBILITY_INLINES_HIDDEN ON
               LIBRARY_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/lib/caddis)
  target_link_options(${target} PRIVATE -Wl,--exclude-libs,ALL)
  install(TARGETS ${target} DESTINATION libexec/caddis)
endfunction()

# caddis_test(markup SOURCES ATest.cpp BTest.cpp DEPENDS markup LIBRARIES DBus::DBus): one program per source
# folder, one ctest entry per case, labelled with the folder.
function(caddis_test name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LIBRARIES;MODULES" ${ARGN})
  set(target ${name}_tests)
  add_executable(${target} ${ARG_SOURCES})
  list(TRANSFORM ARG_DEPENDS PREPEND caddis::)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${target} PRIVATE ${ARG_DEPENDS} ${ARG_LIBRARIES} caddis::warnings GTest::gtest_main)
  target_compile_definitions(${target} PRIVATE CADDIS_TEST_DATA="${PROJECT_SOURCE_DIR}/tests/data")
  if(ARG_MODULES)
    list(TRANSFORM ARG_MODULES PREPEND caddis_)
    add_dependencies(${target} ${ARG_MODULES})
  endif()
  target_precompile_headers(${target} PRIVATE <gtest/gtest.h>)
  gtest_discover_tests(${target} PROPERTIES LABELS ${name} TIMEOUT 120 DISCOVERY_TIMEOUT 60)
endfunction()

# caddis_benchmark(markup SOURCES ABenchmark.cpp DEPENDS markup)
function(caddis_benchmark name)
  cmake_parse_arguments(ARG "" "" "SOURCES;DEPENDS;LIBRARIES" ${ARGN})
  set(target ${name}_benchmarks)
  add_executable(${target} ${ARG_SOURCES})
  list(TRANSFORM ARG_DEPENDS PREPEND caddis::)
  target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR}/bench)
  target_link_libraries(
    ${target} PRIVATE ${ARG_DEPENDS} ${ARG_LIBRARIES} caddis::warnings benchmark::benchmark_main)
  set_property(GLOBAL APPEND PROPERTY CADDIS_BENCHMARKS ${target})
endfunction()

# caddis_fuzzer(ZipArchive DEPENDS epub MODULES pdf_engine): fuzz/ZipArchiveFuzzer.cpp over the seeds in fuzz/corpus/ZipArchive.
#
# With CADDIS_FUZZ (clang) a libFuzzer program ZipArchiveFuzzer; always a program ZipArchiveFuzzer_replay that
# runs the seeds, and mutations of them, as an ordinary test with any compiler.
function(caddis_fuzzer name)
  cmake_parse_arguments(ARG "" "" "DEPENDS;LIBRARIES;MODULES" ${ARGN})
  list(TRANSFORM ARG_DEPENDS PREPEND caddis::)
  list(TRANSFORM ARG_MODULES PREPEND caddis_)
  set(corpus ${CMAKE_CURRENT_SOURCE_DIR}/corpus/${name})
  add_executable(${name}Fuzzer_replay ${name}Fuzzer.cpp Replay.cpp)
  target_include_directories(${name}Fuzzer_replay PRIVATE ${PROJECT_SOURCE_DIR}/tests)
  target_link_libraries(${name}Fuzzer_replay PRIVATE ${ARG_DEPENDS} ${ARG_LIBRARIES} caddis::warnings)
  if(ARG_MODULES)
    add_dependencies(${name}Fuzzer_replay ${ARG_MODULES})
  endif()
  add_test(NAME fuzz.${name} COMMAND ${name}Fuzzer_replay ${corpus})
  set_tests_properties(fuzz.${name} PROPERTIES LABELS fuzz TIMEOUT 120)
  if(CADDIS_FUZZ)
    add_executable(${name}Fuzzer ${name}Fuzzer.cpp)
    target_include_directories(${name}Fuzzer PRIVATE ${PROJECT_SOURCE_DIR}/tests)
    target_compile_options(${name}Fuzzer PRIVATE -fsanitize=fuzzer)
    target_link_options(${name}Fuzzer PRIVATE -fsanitize=fuzzer)
    target_link_libraries(${name}Fuzzer PRIVATE ${ARG_DEPENDS} ${ARG_LIBRARIES} caddis::warnings)
    if(ARG_MODULES)
      add_dependencies(${name}Fuzzer ${ARG_MODULES})
    endif()
  endif()
endfunction()
