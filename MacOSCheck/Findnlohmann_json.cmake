include(HeaderLibrary)
use_installed_headers(nlohmann_json::nlohmann_json nlohmann nlohmann/json.hpp nlohmann-json3-dev)
set(nlohmann_json_FOUND TRUE)
