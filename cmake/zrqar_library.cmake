# zrqar_library(TARGET INCLUDES): what the libraries of this project have in common. INCLUDES is the folder of the
# public headers; the exported names are in cmake/TARGET.map.
#
# The soname carries the first number of the version. Raise it whenever a program built against the release before
# could stop working with the new library: an exported symbol gone, a virtual operation or a field added, moved or
# retyped, a size changed. `./dev abi` is red for each of these. Additions that leave all of that in place raise the
# second number, everything else the third. The version that find_package accepts follows the first number by itself.
function(zrqar_library target includes)
  add_library(zrqardatainterfaces::${target} ALIAS ${target})
  # A static library may end up in somebody's shared one.
  set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON
    VERSION ${PROJECT_VERSION} SOVERSION ${PROJECT_VERSION_MAJOR} INSTALL_RPATH $ORIGIN)
  target_compile_features(${target} PRIVATE cxx_std_20 INTERFACE cxx_std_17)
  if(PROJECT_IS_TOP_LEVEL)
    target_compile_options(${target} PRIVATE
      $<$<COMPILE_LANGUAGE:CXX>:-Wall -Wextra -Wpedantic -Wshadow -Wconversion>)
  endif()
  target_include_directories(${target} PUBLIC $<BUILD_INTERFACE:${includes}>)
  if(BUILD_SHARED_LIBS)
    set(map ${PROJECT_SOURCE_DIR}/cmake/${target}.map)
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${map})
    target_link_options(${target} PRIVATE LINKER:--version-script=${map})
    # clang leaves it to the program to bring the sanitizers, which another project may ask for.
    if(PROJECT_IS_TOP_LEVEL AND NOT ZRQAR_FUZZERS)
      target_link_options(${target} PRIVATE LINKER:-z,defs)
    endif()
    zrqar_mark_control_flow(${target})
  endif()
  zrqar_install_target(${target} ${includes})
endfunction()

# zrqar_link_platform(TARGET LIBRARY...): links libraries of the platform, be they the stand-ins or another project's.
# Programs that find TARGET installed get what zrqardatainterfacesConfig.cmake finds there.
function(zrqar_link_platform target)
  foreach(library ${ARGN})
    target_link_libraries(${target} PUBLIC
      $<BUILD_INTERFACE:${library}> $<INSTALL_INTERFACE:zrqardatainterfaces::${library}>)
  endforeach()
endfunction()
