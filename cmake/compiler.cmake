# Flags that every target shares. Contraction is off so that a result does not depend on the machine's FMA.
find_program(CCACHE ccache)
if(CCACHE)
  # Precompiled headers are kept, too.
  set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_SLOPPINESS=pch_defines,time_macros ${CCACHE})
endif()

# Nobody puts functions of his own before those of the library, so that they may be called and inlined directly.
add_compile_options(-fno-semantic-interposition)
add_compile_options(-ffp-contract=off -Wall -Wextra -Wpedantic -Wconversion -Wno-sign-conversion -Wshadow)
if(VLDV_WERROR)
  add_compile_options(-Werror)
endif()
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
  # GCC 12 reports overlapping copies and out-of-bounds reads inside inlined std::string code that cannot happen.
  add_compile_options(-Wno-restrict -Wno-array-bounds -Wno-stringop-overflow -Wno-stringop-overread)
endif()

if(VLDV_SANITIZE OR VLDV_FUZZ)
  # Null pointers and sizes of objects are found by the address sanitizer too; asking before each access adds
  # a fifth to the time of a build.
  add_compile_options(-fsanitize=address,undefined -fno-sanitize=null,object-size -fno-sanitize-recover=all
    -fno-omit-frame-pointer)
  add_link_options(-fsanitize=address,undefined)
endif()
if(CMAKE_CXX_COMPILER_ID MATCHES "Clang")
  # Precompiled headers of one content are the same to the compiler cache.
  add_compile_options("SHELL:-Xclang -fno-pch-timestamp")
elseif(VLDV_TESTS)
  add_compile_options(-fpch-preprocess) # so that the compiler cache knows sources with them again
endif()
if(VLDV_FUZZ)
  add_compile_options(-fsanitize=fuzzer-no-link)
endif()
