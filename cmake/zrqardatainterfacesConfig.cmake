include(CMakeFindDependencyMacro)
find_dependency(Boost 1.74 COMPONENTS filesystem)
include(${CMAKE_CURRENT_LIST_DIR}/zrqardatainterfacesTargets.cmake)
