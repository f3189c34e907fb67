# The Debian packages: one for each component of the install tree.
option(ZRQAR_PACKAGES "Prepare the Debian packages" OFF)
if(NOT ZRQAR_PACKAGES)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_PACKAGE_VENDOR "zrqardatainterfaces maintainers")
set(CPACK_PACKAGE_CONTACT "zrqardatainterfaces maintainers <maintainers@zrqardatainterfaces.example>")
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
set(CPACK_COMPONENTS_ALL runtime development)
set(CPACK_COMPONENT_DEVELOPMENT_DEPENDS runtime)

set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_SOURCE zrqardatainterfaces)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
set(CPACK_DEBIAN_RUNTIME_PACKAGE_NAME libzrqardatainterfaces${PROJECT_VERSION_MAJOR})
set(CPACK_DEBIAN_RUNTIME_PACKAGE_SECTION libs)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_NAME libzrqardatainterfaces-dev)
set(CPACK_DEBIAN_DEVELOPMENT_PACKAGE_SECTION libdevel)
set(CPACK_PACKAGE_DESCRIPTION_SUMMARY "")  # each description brings its own
set(CPACK_COMPONENT_RUNTIME_DESCRIPTION "data interfaces for deployable archives
Packaging tools and a runtime read an application's files through these
libraries on their way into and out of a deployable archive: plain, as the
target of a symbolic link, or passed through a transform, such as one between
code pages.")
set(CPACK_COMPONENT_DEVELOPMENT_DESCRIPTION "data interfaces for deployable archives - development files
Headers, link libraries and descriptions for CMake and pkg-config, to build
programs that read an application's files on their way into and out of a
deployable archive; and qarread, a program that shows what the readers deliver.")

# Dependencies are what the files need, as the tools of Debian find it out.
set(CPACK_DEBIAN_ENABLE_COMPONENT_DEPENDS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS ON)
set(CPACK_DEBIAN_PACKAGE_GENERATE_SHLIBS_POLICY >=)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS ON)
set(CPACK_DEBIAN_PACKAGE_SHLIBDEPS_PRIVATE_DIRS
  ${PROJECT_BINARY_DIR}/src ${PROJECT_BINARY_DIR}/platform/i18n ${PROJECT_BINARY_DIR}/platform/resources)
find_package(Boost 1.74 REQUIRED COMPONENTS filesystem)
execute_process(COMMAND dpkg-query --search ${Boost_LIBRARY_DIRS}/libboost_filesystem.so
  OUTPUT_VARIABLE owner COMMAND_ERROR_IS_FATAL ANY)
string(REGEX REPLACE ":.*" "" CPACK_DEBIAN_DEVELOPMENT_PACKAGE_DEPENDS ${owner})

# What every Debian package comes with.
string(TIMESTAMP date "%a, %d %b %Y %H:%M:%S +0000" UTC)  # honours SOURCE_DATE_EPOCH
string(TIMESTAMP year "%Y" UTC)
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/changelog.in debian/changelog @ONLY)
configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/copyright.in debian/copyright @ONLY)
execute_process(COMMAND gzip --best --no-name --force --keep ${PROJECT_BINARY_DIR}/debian/changelog
  COMMAND_ERROR_IS_FATAL ANY)
file(WRITE ${PROJECT_BINARY_DIR}/debian/triggers "activate-noawait ldconfig\n")
set(CPACK_DEBIAN_RUNTIME_PACKAGE_CONTROL_EXTRA ${PROJECT_BINARY_DIR}/debian/triggers)
foreach(component RUNTIME DEVELOPMENT)
  string(TOLOWER ${component} lower)
  install(FILES ${PROJECT_BINARY_DIR}/debian/changelog.gz ${PROJECT_BINARY_DIR}/debian/copyright
    DESTINATION ${CMAKE_INSTALL_DATADIR}/doc/${CPACK_DEBIAN_${component}_PACKAGE_NAME} COMPONENT ${lower})
endforeach()

include(CPack)
