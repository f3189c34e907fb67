# The platform's libraries, in the folder PLATFORM, as targets.
add_library(zropccore INTERFACE)
target_include_directories(zropccore INTERFACE ${PLATFORM}/include)
foreach(library zrqar_res kui18n)
  add_library(${library} SHARED IMPORTED)
  set_target_properties(${library} PROPERTIES IMPORTED_LOCATION ${PLATFORM}/lib/lib${library}.so
    INTERFACE_INCLUDE_DIRECTORIES ${PLATFORM}/include)
endforeach()
target_link_libraries(kui18n INTERFACE zrqar_res)
