# The tests and the doctor are built to see that they compile and link, so for one architecture, and
# fast. They and the application of `make run` are linked as far as the declarations reach, which have
# no more of the C++ library than the extension uses.
function(adapt_tests)
  set(programs QuorvaUnitTests QuorvaFileTests QuorvaCocoaTests quorva-doctor)
  set(targets ${programs} QuorvaFakePlatform SimulatorFinderSync gmock gmock_main)
  set_target_properties(${targets} PROPERTIES OSX_ARCHITECTURES arm64)
  list(APPEND programs Quorva)
  foreach(target IN LISTS targets programs)
    target_compile_options(${target} PRIVATE -O0)
  endforeach()
  foreach(target IN LISTS programs)
    target_link_options(${target} PRIVATE "LINKER:-undefined,dynamic_lookup")
  endforeach()
endfunction()
cmake_language(DEFER CALL adapt_tests)
