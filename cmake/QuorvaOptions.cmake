# Every target links QuorvaOptions: the language level and the warnings in one place.

add_library(QuorvaOptions INTERFACE)
target_compile_features(QuorvaOptions INTERFACE cxx_std_23)
set(CMAKE_CXX_EXTENSIONS OFF)
set(CMAKE_OBJCXX_EXTENSIONS OFF)
# Before 3.26 CMake knows Apple Clang's option for C++, but not for Objective-C++.
if(NOT CMAKE_OBJCXX23_STANDARD_COMPILE_OPTION)
  set(CMAKE_OBJCXX23_STANDARD_COMPILE_OPTION "${CMAKE_CXX23_STANDARD_COMPILE_OPTION}")
endif()

target_compile_options(
  QuorvaOptions
  INTERFACE
    -Wall
    -Wextra
    -Wconversion # a narrowed number is a decision, so it has to be written
    -Wsign-conversion
    -Wshadow # a name means one thing in one place
    -Wnon-virtual-dtor
    -Wold-style-cast # C++ casts say which of the four they are
    -Wimplicit-fallthrough
    -Wextra-semi
    -Wunreachable-code
    -Wswitch-enum # a new case of an enumeration must be met wherever one is switched on
    -Wmissing-prototypes # whatever is not declared in a header is file-local
)
target_include_directories(QuorvaOptions INTERFACE "${PROJECT_SOURCE_DIR}")

if(QUORVA_SANITIZERS)
  target_compile_options(
    QuorvaOptions
    INTERFACE -fsanitize=${QUORVA_SANITIZERS} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(QuorvaOptions INTERFACE -fsanitize=${QUORVA_SANITIZERS})
endif()

if(QUORVA_COVERAGE)
  target_compile_options(QuorvaOptions INTERFACE -fprofile-instr-generate -fcoverage-mapping
                                                 -fcoverage-mcdc)
  target_link_options(QuorvaOptions INTERFACE -fprofile-instr-generate)
endif()
