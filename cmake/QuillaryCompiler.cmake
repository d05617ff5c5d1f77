# The flags that every target shares: warnings are errors, sanitizers are a switch.
add_library(QuillaryCompiler INTERFACE)
target_compile_options(QuillaryCompiler INTERFACE
  -Wall -Wextra -Wpedantic -Werror -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wold-style-cast
  -Wno-error=deprecated-declarations)
target_compile_definitions(QuillaryCompiler INTERFACE
  QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING
  QT_NO_FOREACH QT_NO_KEYWORDS QT_STRICT_ITERATORS QT_USE_QSTRINGBUILDER
  $<$<CONFIG:Debug>:_GLIBCXX_ASSERTIONS>)
target_include_directories(QuillaryCompiler INTERFACE "${PROJECT_SOURCE_DIR}")

if(QUILLARY_SANITIZE)
  target_compile_options(QuillaryCompiler INTERFACE
    -fsanitize=${QUILLARY_SANITIZE} -fno-sanitize-recover=all -fno-omit-frame-pointer)
  target_link_options(QuillaryCompiler INTERFACE -fsanitize=${QUILLARY_SANITIZE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # In instrumented code g++ takes the empty state of a std::optional for a use before initialization.
    target_compile_options(QuillaryCompiler INTERFACE -Wno-maybe-uninitialized)
  endif()
endif()

if(CMAKE_UNITY_BUILD AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # Read as one, a folder's sources look like headers, whose classes should not use an anonymous namespace.
  target_compile_options(QuillaryCompiler INTERFACE -Wno-subobject-linkage)
endif()

find_program(LLD ld.lld)
if(LLD)
  target_link_options(QuillaryCompiler INTERFACE -fuse-ld=lld)
endif()

# ccache where present; precompiled headers need its leave to overlook their time stamps.
find_program(CCACHE ccache)
if(CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env
    CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime
    CCACHE_BASEDIR=${PROJECT_SOURCE_DIR} CCACHE_NOHASHDIR=1 ${CCACHE})
  if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    target_compile_options(QuillaryCompiler INTERFACE -fpch-preprocess)
  endif()
endif()

if(CMAKE_CXX_COMPILER_ID STREQUAL "Clang")
  # An upgrade leaves a system header with a date before that of what was built from it: Ninja builds nothing again, and by
  # the date Clang would refuse its precompiled header.
  target_compile_options(QuillaryCompiler INTERFACE "SHELL:-Xclang -fno-pch-timestamp")
endif()
