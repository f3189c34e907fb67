# The install tree: two components, runtime (what programs need) and development (what building against it needs).
include(CMakePackageConfigHelpers)

# Relative run paths: installed programs find the libraries even if the tree is moved.
file(RELATIVE_PATH libraries_from_programs ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(CMAKE_INSTALL_RPATH $ORIGIN/${libraries_from_programs})
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

set(ZRQAR_CMAKE_DIRECTORY ${CMAKE_INSTALL_LIBDIR}/cmake/zrqardatainterfaces)

# zrqar_install_target(TARGET INCLUDES): installs a library, the public headers in the folder INCLUDES, and a CMake file
# for this library alone, so that a stand-in can be left out if the platform has the library.
function(zrqar_install_target target includes)
  if(NOT ZRQAR_INSTALL)
    return()
  endif()
  install(TARGETS ${target} EXPORT ${target}Targets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(DIRECTORY ${includes}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
  install(EXPORT ${target}Targets NAMESPACE zrqardatainterfaces::
    DESTINATION ${ZRQAR_CMAKE_DIRECTORY} COMPONENT development)
endfunction()

# Installs the files for find_package(zrqardatainterfaces) and pkg-config, and the program.
function(zrqar_install_rest)
  if(PROJECT_IS_TOP_LEVEL)
    add_custom_target(installed DEPENDS zrqardatainterfaces $<TARGET_NAME_IF_EXISTS:qarread>)  # all to install
  endif()
  if(ZRQAR_EXAMPLES)
    zrqar_install_program()
  endif()

  # Clients of a static library must find its dependencies themselves.
  set(ZRQAR_DEPENDENCIES)
  set(PC_REQUIRES)
  if(NOT BUILD_SHARED_LIBS AND TARGET zrqardatainterfaces::kui18n)
    set(ZRQAR_DEPENDENCIES "find_dependency(ICU 72 COMPONENTS uc)")
    set(PC_REQUIRES "icu-uc >= 72")
  endif()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/zrqardatainterfacesConfig.cmake.in
    ${PROJECT_BINARY_DIR}/zrqardatainterfacesConfig.cmake @ONLY)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/zrqardatainterfacesConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/zrqardatainterfacesPlatform.cmake
    ${PROJECT_BINARY_DIR}/zrqardatainterfacesConfig.cmake
    ${PROJECT_BINARY_DIR}/zrqardatainterfacesConfigVersion.cmake
    DESTINATION ${ZRQAR_CMAKE_DIRECTORY} COMPONENT development)

  # The prefix is known only at installation: `cmake --install --prefix` may change it.
  foreach(directory LIBDIR INCLUDEDIR)
    cmake_path(IS_ABSOLUTE CMAKE_INSTALL_${directory} absolute)
    set(PC_${directory} ${CMAKE_INSTALL_${directory}})
    if(NOT absolute)
      set(PC_${directory} \${prefix}/${PC_${directory}})
    endif()
  endforeach()
  install(CODE "
    set(PC_REQUIRES [[${PC_REQUIRES}]])
    set(PC_LIBDIR [[${PC_LIBDIR}]])
    set(PC_INCLUDEDIR [[${PC_INCLUDEDIR}]])
    set(PROJECT_VERSION ${PROJECT_VERSION})
    set(PROJECT_DESCRIPTION [[${PROJECT_DESCRIPTION}]])
    configure_file([[${PROJECT_SOURCE_DIR}/cmake/zrqardatainterfaces.pc.in]]
      [[${PROJECT_BINARY_DIR}/zrqardatainterfaces.pc]] @ONLY)" COMPONENT development)
  install(FILES ${PROJECT_BINARY_DIR}/zrqardatainterfaces.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()

# Installs the program, its manual page and its bash completion.
function(zrqar_install_program)
  install(TARGETS qarread RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT development)
  set(manual ${PROJECT_SOURCE_DIR}/docs/qarread.1)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${manual})
  execute_process(COMMAND gzip --best --no-name --stdout ${manual} OUTPUT_FILE ${PROJECT_BINARY_DIR}/qarread.1.gz
    COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${PROJECT_BINARY_DIR}/qarread.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT development)
  install(FILES ${PROJECT_SOURCE_DIR}/examples/qarread.bash RENAME qarread
    DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions COMPONENT development)
endfunction()
