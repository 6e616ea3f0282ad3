# Builds for macOS on Linux with what scripts/macos-check laid out in MACOS_CHECK_FOLDER: the
# compiler's wrapper and the tools that stand in for Apple's in bin/, the declarations in SDK/.

set(CMAKE_SYSTEM_NAME Darwin)
set(CMAKE_SYSTEM_PROCESSOR arm64)

set(CMAKE_CXX_COMPILER "${MACOS_CHECK_FOLDER}/bin/clang++")
set(CMAKE_OBJCXX_COMPILER "${MACOS_CHECK_FOLDER}/bin/clang++")
set(CMAKE_OSX_SYSROOT "${MACOS_CHECK_FOLDER}/SDK" CACHE PATH "")
# Debian's ar makes no index for universal objects; its libtool does.
set(CMAKE_CXX_ARCHIVE_CREATE "llvm-libtool-darwin-19 -static -o <TARGET> <OBJECTS>")
set(CMAKE_CXX_ARCHIVE_FINISH "")
set(CMAKE_STRIP llvm-strip-19 CACHE FILEPATH "")
set(CMAKE_INSTALL_NAME_TOOL llvm-install-name-tool-19 CACHE FILEPATH "")
set(CMAKE_TRY_COMPILE_PLATFORM_VARIABLES MACOS_CHECK_FOLDER)

# What clang only warns of by default, or not at all, is an API that is used wrongly or too early.
set(CMAKE_CXX_FLAGS_INIT "-Wunguarded-availability")
set(CMAKE_OBJCXX_FLAGS_INIT "-Wunguarded-availability -Wundeclared-selector")
set(CMAKE_EXE_LINKER_FLAGS_INIT "-Wl,-fatal_warnings")
