# The JSON library is all headers, so the one that is installed serves, by itself: the folder that it
# lies in has the headers of Linux.
find_path(NLOHMANN_JSON_FOLDER nlohmann/json.hpp PATHS /usr/include NO_DEFAULT_PATH)
if(NOT NLOHMANN_JSON_FOLDER)
  message(FATAL_ERROR "nlohmann/json.hpp was not found: apt-get install nlohmann-json3-dev")
endif()
if(NOT TARGET nlohmann_json::nlohmann_json)
  file(MAKE_DIRECTORY "${PROJECT_BINARY_DIR}/nlohmann_json")
  file(CREATE_LINK "${NLOHMANN_JSON_FOLDER}/nlohmann" "${PROJECT_BINARY_DIR}/nlohmann_json/nlohmann"
       SYMBOLIC)
  add_library(nlohmann_json::nlohmann_json INTERFACE IMPORTED GLOBAL)
  target_include_directories(nlohmann_json::nlohmann_json SYSTEM
                             INTERFACE "${PROJECT_BINARY_DIR}/nlohmann_json")
endif()
set(nlohmann_json_FOUND TRUE)
