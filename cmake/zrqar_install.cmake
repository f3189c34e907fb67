# The install tree: two components, runtime (what programs need) and development (what building against it needs).
include(CMakePackageConfigHelpers)

# Installed programs and libraries find the libraries wherever the tree is put.
file(RELATIVE_PATH libraries_from_programs ${CMAKE_INSTALL_FULL_BINDIR} ${CMAKE_INSTALL_FULL_LIBDIR})
set(CMAKE_INSTALL_RPATH $ORIGIN/${libraries_from_programs})
set(CMAKE_BUILD_RPATH_USE_ORIGIN ON)

# zrqar_install_target(TARGET INCLUDES): a library, and the public headers in the folder INCLUDES.
function(zrqar_install_target target includes)
  install(TARGETS ${target} EXPORT zrqardatainterfacesTargets
    LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT runtime NAMELINK_COMPONENT development
    INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(DIRECTORY ${includes}/ DESTINATION ${CMAKE_INSTALL_INCLUDEDIR} COMPONENT development)
endfunction()

# The program, its manual page, and what find_package(zrqardatainterfaces) and pkg-config read.
function(zrqar_install_rest)
  add_custom_target(installed DEPENDS zrqardatainterfaces qarread)  # all that is built to be installed
  install(TARGETS qarread RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT development)
  set(manual ${PROJECT_SOURCE_DIR}/docs/qarread.1)
  set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${manual})
  execute_process(COMMAND gzip --best --no-name --stdout ${manual} OUTPUT_FILE ${PROJECT_BINARY_DIR}/qarread.1.gz
    COMMAND_ERROR_IS_FATAL ANY)
  install(FILES ${PROJECT_BINARY_DIR}/qarread.1.gz DESTINATION ${CMAKE_INSTALL_MANDIR}/man1 COMPONENT development)

  set(folder ${CMAKE_INSTALL_LIBDIR}/cmake/zrqardatainterfaces)
  install(EXPORT zrqardatainterfacesTargets NAMESPACE zrqardatainterfaces::
    DESTINATION ${folder} COMPONENT development)
  write_basic_package_version_file(${PROJECT_BINARY_DIR}/zrqardatainterfacesConfigVersion.cmake
    COMPATIBILITY SameMajorVersion)
  install(FILES ${PROJECT_SOURCE_DIR}/cmake/zrqardatainterfacesConfig.cmake
    ${PROJECT_BINARY_DIR}/zrqardatainterfacesConfigVersion.cmake
    DESTINATION ${folder} COMPONENT development)

  # The prefix is known for certain only when installing: cmake --install may name another.
  foreach(directory LIBDIR INCLUDEDIR)
    cmake_path(IS_ABSOLUTE CMAKE_INSTALL_${directory} absolute)
    set(PC_${directory} ${CMAKE_INSTALL_${directory}})
    if(NOT absolute)
      set(PC_${directory} \${prefix}/${PC_${directory}})
    endif()
  endforeach()
  install(CODE "
    set(PC_LIBDIR [[${PC_LIBDIR}]])
    set(PC_INCLUDEDIR [[${PC_INCLUDEDIR}]])
    set(PROJECT_VERSION ${PROJECT_VERSION})
    set(PROJECT_DESCRIPTION [[${PROJECT_DESCRIPTION}]])
    configure_file([[${PROJECT_SOURCE_DIR}/cmake/zrqardatainterfaces.pc.in]]
      [[${PROJECT_BINARY_DIR}/zrqardatainterfaces.pc]] @ONLY)" COMPONENT development)
  install(FILES ${PROJECT_BINARY_DIR}/zrqardatainterfaces.pc
    DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT development)
endfunction()
