# Builds for macOS on Linux with the compiler and the tools in bin/ that stand in for Apple's, and the
# declarations that scripts/macos-sdk has laid out.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)

set(CMAKE_CXX_COMPILER "${CMAKE_CURRENT_LIST_DIR}/bin/clang++")
set(CMAKE_OBJCXX_COMPILER "${CMAKE_CURRENT_LIST_DIR}/bin/clang++")
# Debian's ar makes no index for universal objects; its libtool does.
foreach(language IN ITEMS CXX OBJCXX)
  set(CMAKE_${language}_ARCHIVE_CREATE "llvm-libtool-darwin-19 -static -o <TARGET> <OBJECTS>")
  set(CMAKE_${language}_ARCHIVE_FINISH "")
endforeach()
set(CMAKE_STRIP llvm-strip-19 CACHE FILEPATH "")
set(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool-19 CACHE FILEPATH "")

list(PREPEND CMAKE_MODULE_PATH "${CMAKE_CURRENT_LIST_DIR}"
     "${CMAKE_CURRENT_LIST_DIR}/../cmake/FromSources")
# At the end of which there are the targets that it adapts.
set(CMAKE_PROJECT_QuorvaFinderExtension_INCLUDE "${CMAKE_CURRENT_LIST_DIR}/Tests.cmake")

# What clang only warns of by default, or not at all, is an API that is used wrongly or too early.
set(CMAKE_CXX_FLAGS_INIT "-Wunguarded-availability")
set(CMAKE_OBJCXX_FLAGS_INIT "-Wunguarded-availability -Wundeclared-selector")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-fatal_warnings")
