# zrqar_library(TARGET INCLUDES): what the shared libraries of this project have in common. INCLUDES is the folder of
# the public headers; the exported names are in cmake/TARGET.map.
#
# The soname carries the first number of the version. Raise it whenever a program built against the release before
# could stop working with the new library: an exported symbol gone, a virtual operation or a field added, moved or
# retyped, a size changed. `./dev abi` is red for each of these. Additions that leave all of that in place raise the
# second number, everything else the third. The name of the Debian package and the version that find_package accepts
# follow the first number by themselves.
function(zrqar_library target includes)
  set(map ${PROJECT_SOURCE_DIR}/cmake/${target}.map)
  set_target_properties(${target} PROPERTIES
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} LINK_DEPENDS ${map} INSTALL_RPATH $ORIGIN)
  target_compile_features(${target} PRIVATE cxx_std_20 INTERFACE cxx_std_17)
  target_compile_options(${target} PRIVATE
    $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion>)
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${includes}>)
  # clang leaves it to the program to bring the sanitizers.
  target_link_options(${target} PRIVATE $<$<NOT:$<BOOL:${ZRQAR_FUZZERS}>>:LINKER:-z,defs>
    LINKER:--version-script=${map})
  zrqar_mark_control_flow(${target})
  zrqar_install_target(${target} ${includes})
endfunction()
