# zrqar_library(TARGET INCLUDES): sets the common properties of the libraries of this project. INCLUDES is the folder of
# the public headers; cmake/TARGET.map has the exported names.
#
# The soname has the first number of the version. Increase it if a program built with the previous release could stop
# working with the new library: if an exported symbol is removed, a virtual operation or a field is added, moved or
# changed, or a size changes. `./dev abi` fails for each of these. Increase the second number for compatible additions,
# and the third for everything else. find_package accepts versions with the same first number.
function(zrqar_library target includes)
  add_library(zrqardatainterfaces::${target} ALIAS ${target})
  # A static library may be linked into a shared one.
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
    # Not with sanitizers, which a parent project may use: with clang, the program and not the library links their
    # runtime.
    if(PROJECT_IS_TOP_LEVEL AND NOT ZRQAR_FUZZERS)
      target_link_options(${target} PRIVATE LINKER:-z,defs)
    endif()
    zrqar_mark_control_flow(${target})
  endif()
  zrqar_install_target(${target} ${includes})
endfunction()

# zrqar_link_platform(TARGET LIBRARY...): links libraries of the platform, which are the stand-ins or targets of a
# parent project. Programs that use the installed TARGET link the libraries that zrqardatainterfacesConfig.cmake finds.
function(zrqar_link_platform target)
  foreach(library ${ARGN})
    target_link_libraries(${target} PUBLIC
      $<BUILD_INTERFACE:${library}> $<INSTALL_INTERFACE:zrqardatainterfaces::${library}>)
  endforeach()
endfunction()
