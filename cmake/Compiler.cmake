# How every target of ours is compiled: language, warnings, sanitizers, and the means that keep two cores quick.

set(CMAKE_CXX_STANDARD 23)
set(CMAKE_CXX_STANDARD_REQUIRED ON)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_CXX_FLAGS_RELEASE "-O2 -DNDEBUG")
set(CMAKE_AUTOMOC OFF)
# moc reads headers without compiling them and stumbles over this one of the standard library: take it as read.
set(CMAKE_AUTOMOC_MOC_OPTIONS -D_GLIBCXX_CONCEPTS)
set(CMAKE_RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)

find_program(CCACHE ccache)
if(CCACHE)
    # Without fixed paths in the hash, every checkout of the project shares one cache.
    set(CMAKE_CXX_COMPILER_LAUNCHER ${CMAKE_COMMAND} -E env CCACHE_NOHASHDIR=1 CCACHE_BASEDIR=${CMAKE_SOURCE_DIR}
        CCACHE_SLOPPINESS=pch_defines,time_macros,include_file_mtime,include_file_ctime ${CCACHE})
endif()
find_program(MOLD mold)

add_library(taliro_options INTERFACE)
target_compile_options(taliro_options INTERFACE -Wall -Wextra -Wpedantic -Werror)
if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
    # 12's analysis of inlined std::string and std::optional warns of what isn't there.
    target_compile_options(taliro_options INTERFACE -fpch-preprocess -Wno-restrict -Wno-maybe-uninitialized
        -Wno-stringop-overread -Wno-stringop-overflow -Wno-array-bounds -Wno-dangling-pointer)
endif()
if(MOLD)
    target_link_options(taliro_options INTERFACE -fuse-ld=mold)
endif()
target_link_options(taliro_options INTERFACE -Wl,--as-needed)
if(TALIRO_SANITIZE)
    target_compile_options(taliro_options INTERFACE -O1 -fsanitize=address,undefined
        -fno-sanitize-recover=all -fno-omit-frame-pointer)
    target_link_options(taliro_options INTERFACE -fsanitize=address,undefined)
endif()
