# GoogleTest built from its sources, for a C++ library other than the one that the system's own
# GoogleTest is built on. A preset that needs it has this folder in CMAKE_MODULE_PATH.
find_path(GOOGLETEST_SOURCES googlemock/src/gmock-all.cc PATHS /usr/src/googletest NO_DEFAULT_PATH)
if(NOT GOOGLETEST_SOURCES)
  message(FATAL_ERROR "GoogleTest's sources were not found. On Debian: apt-get install googletest")
endif()
if(NOT TARGET gmock)
  add_library(gmock STATIC "${GOOGLETEST_SOURCES}/googletest/src/gtest-all.cc"
                           "${GOOGLETEST_SOURCES}/googlemock/src/gmock-all.cc")
  target_include_directories(
    gmock SYSTEM PUBLIC "${GOOGLETEST_SOURCES}/googletest/include"
                        "${GOOGLETEST_SOURCES}/googlemock/include"
    PRIVATE "${GOOGLETEST_SOURCES}/googletest" "${GOOGLETEST_SOURCES}/googlemock")
  add_library(gmock_main STATIC "${GOOGLETEST_SOURCES}/googlemock/src/gmock_main.cc")
  target_link_libraries(gmock_main PUBLIC gmock)
  foreach(target IN ITEMS gmock gmock_main)
    target_compile_features(${target} PUBLIC cxx_std_23)
    set_target_properties(${target} PROPERTIES COMPILE_WARNING_AS_ERROR OFF UNITY_BUILD OFF)
    string(REPLACE gmock gtest part ${target})
    add_library(GTest::${target} ALIAS ${target})
    add_library(GTest::${part} ALIAS ${target})
  endforeach()
endif()
set(GTest_FOUND TRUE)
