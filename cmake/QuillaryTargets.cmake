# quillary_add_layer(NAME): a static library, one of the layers. Its folders add their sources with target_sources.
function(quillary_add_layer name)
  add_library(${name} STATIC)
  target_link_libraries(${name} PUBLIC QuillaryCompiler)
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTORCC ON)
endfunction()

# The layers are built as a preset says; of a test's own sources it is the building that counts, done in a third of the time.
set(QUILLARY_TEST_OPTIONS -O0)
if(QUILLARY_SANITIZE)
  list(APPEND QUILLARY_TEST_OPTIONS -fno-sanitize=undefined)
endif()

# quillary_add_tests(NAME SOURCES... LINK targets...): one test program of Google Test, one entry in ctest.
# LABELS desktop keeps a program out of the runs that have no display; the thread sanitizer runs those with LABELS threads.
function(quillary_add_tests name)
  cmake_parse_arguments(PARSE_ARGV 1 ARG "" "TIMEOUT" "SOURCES;LINK;LABELS;ENVIRONMENT")
  add_executable(${name} ${ARG_SOURCES})
  target_link_libraries(${name} PRIVATE ${ARG_LINK} QuillaryTestSupport GTest::gmock GTest::gtest)
  target_compile_options(${name} PRIVATE ${QUILLARY_TEST_OPTIONS})
  set_target_properties(${name} PROPERTIES AUTOMOC ON AUTORCC ON)
  target_precompile_headers(${name} REUSE_FROM QuillaryTestSupport)
  if("threads" IN_LIST ARG_LABELS)
    add_dependencies(thread-tests ${name})
  endif()
  add_test(NAME ${name} COMMAND ${name})
  if(NOT ARG_TIMEOUT)
    set(ARG_TIMEOUT 600)
  endif()
  set_tests_properties(${name} PROPERTIES TIMEOUT ${ARG_TIMEOUT} LABELS "${ARG_LABELS}"
    ENVIRONMENT "QT_QPA_PLATFORM=offscreen;${ARG_ENVIRONMENT}")
endfunction()

# quillary_add_fuzzer(NAME SOURCE): a libFuzzer program; its seeds lie in Fuzz/corpus/NAME.
function(quillary_add_fuzzer name source)
  add_executable(${name} ${source})
  target_link_libraries(${name} PRIVATE QuillaryCore)
  target_compile_options(${name} PRIVATE -fsanitize=fuzzer)
  target_link_options(${name} PRIVATE -fsanitize=fuzzer)
endfunction()
