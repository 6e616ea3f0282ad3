# A library that is all headers is the one that is installed, but by itself: the folder that it lies
# in has the headers of Linux.
function(use_installed_headers target folder header package)
  if(TARGET ${target})
    return()
  endif()
  find_path(${folder}_FOLDER "${header}" PATHS /usr/include NO_DEFAULT_PATH)
  if(NOT ${folder}_FOLDER)
    message(FATAL_ERROR "${header} was not found: apt-get install ${package}")
  endif()
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/${folder}-headers")
  file(CREATE_LINK "${${folder}_FOLDER}/${folder}" "${PROJECT_BINARY_DIR}/${folder}-headers/${folder}"
       SYMBOLIC)
  add_library(${target} INTERFACE IMPORTED GLOBAL)
  target_include_directories(${target} SYSTEM
                             INTERFACE "${PROJECT_BINARY_DIR}/${folder}-headers")
endfunction()
