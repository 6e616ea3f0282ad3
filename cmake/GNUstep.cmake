# Foundation and AppKit on Linux: link GNUstep to compile and link Objective-C++ against GNUstep and
# what the simulator adds to it.

function(_gnustep_require variable package)
  if(NOT ${variable})
    message(FATAL_ERROR "GNUstep is incomplete: ${variable} was not found. "
                        "On Debian: apt-get install ${package}")
  endif()
endfunction()

find_path(GNUSTEP_INCLUDE_DIR Foundation/NSObject.h PATH_SUFFIXES GNUstep)
_gnustep_require(GNUSTEP_INCLUDE_DIR libgnustep-base-dev)
find_path(GNUSTEP_GUI_INCLUDE_DIR AppKit/NSMenu.h PATH_SUFFIXES GNUstep)
_gnustep_require(GNUSTEP_GUI_INCLUDE_DIR libgnustep-gui-dev)
find_library(GNUSTEP_BASE_LIBRARY gnustep-base)
_gnustep_require(GNUSTEP_BASE_LIBRARY libgnustep-base-dev)
find_library(GNUSTEP_GUI_LIBRARY gnustep-gui)
_gnustep_require(GNUSTEP_GUI_LIBRARY libgnustep-gui-dev)
find_library(GNUSTEP_BLOCKS_LIBRARY BlocksRuntime)
_gnustep_require(GNUSTEP_BLOCKS_LIBRARY libblocksruntime-dev)

# The Objective-C runtime that Debian's GNUstep is built on is GCC's; its headers and the link to its
# library lie in GCC's own folders, of which there is one per version.
file(GLOB _gnustep_gcc_dirs /usr/lib/gcc/*/*)
list(SORT _gnustep_gcc_dirs COMPARE NATURAL ORDER DESCENDING)
find_path(
  GNUSTEP_OBJC_INCLUDE_DIR objc/objc.h
  PATHS ${_gnustep_gcc_dirs}
  PATH_SUFFIXES include
  NO_DEFAULT_PATH)
_gnustep_require(GNUSTEP_OBJC_INCLUDE_DIR libobjc-12-dev)
find_library(GNUSTEP_OBJC_LIBRARY objc HINTS "${GNUSTEP_OBJC_INCLUDE_DIR}/..")
_gnustep_require(GNUSTEP_OBJC_LIBRARY libobjc-12-dev)

add_library(GNUstep INTERFACE)
target_compile_definitions(GNUstep INTERFACE GNUSTEP GNUSTEP_BASE_LIBRARY=1 GNU_GUI_LIBRARY=1
                                             GNU_RUNTIME=1 _NATIVE_OBJC_EXCEPTIONS)
target_compile_options(
  GNUstep
  INTERFACE "$<$<COMPILE_LANGUAGE:OBJCXX>:-fobjc-runtime=gcc;-fobjc-exceptions;-fblocks;-fconstant-string-class=NSConstantString>"
            -fexceptions -fno-strict-aliasing)
# GNUstep's headers don't hold to our warnings.
target_include_directories(GNUstep SYSTEM INTERFACE "${GNUSTEP_INCLUDE_DIR}"
                                                    "${GNUSTEP_GUI_INCLUDE_DIR}")
# Behind the compiler's own folders: of GCC's headers only those of Objective-C are wanted.
target_compile_options(
  GNUstep INTERFACE "SHELL:$<$<COMPILE_LANGUAGE:OBJCXX>:-idirafter ${GNUSTEP_OBJC_INCLUDE_DIR}>")
# The blocks runtime comes first: GNUstep's base library has half of one of its own, whose
# `_Block_copy` does not know the other's blocks and leaves them on the stack.
target_link_libraries(
  GNUstep INTERFACE "${GNUSTEP_BLOCKS_LIBRARY}" "${GNUSTEP_GUI_LIBRARY}" "${GNUSTEP_BASE_LIBRARY}"
                    "${GNUSTEP_OBJC_LIBRARY}")
