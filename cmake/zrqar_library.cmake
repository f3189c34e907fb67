# What the shared libraries of this project have in common.
function(zrqar_library target)
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR})
  target_compile_features(${target} PRIVATE cxx_std_20 INTERFACE cxx_std_17)
  target_compile_options(${target} PRIVATE
    -ffile-prefix-map=${PROJECT_SOURCE_DIR}=. -ffile-prefix-map=${PROJECT_BINARY_DIR}=.
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion>)
  target_link_options(${target} PRIVATE LINKER:-z,defs)
endfunction()
