# The locale of the C library belongs to the program: no library of this project may set it.
if(NOT LIBRARIES)
  message(FATAL_ERROR "There is nothing to look at.")
endif()
foreach(library ${LIBRARIES})
  execute_process(COMMAND ${NM} --dynamic --undefined-only ${library}
    OUTPUT_VARIABLE imports RESULT_VARIABLE status)
  if(NOT status EQUAL 0 OR NOT imports MATCHES " U ")
    message(FATAL_ERROR "The imports of ${library} cannot be listed.")
  endif()
  if(imports MATCHES "[^\n]*(setlocale|uselocale|_ZNSt6locale6global)[^\n]*")
    message(SEND_ERROR "${library} imports${CMAKE_MATCH_0}")
  endif()
endforeach()
