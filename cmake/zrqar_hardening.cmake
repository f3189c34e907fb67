# Makes memory errors harder to exploit. Off under the sanitizers, which detect such errors themselves, and in a parent
# project, which has its own flags.
option(ZRQAR_HARDENING "Build with stack protector, fortify, control-flow protection and full RELRO"
       ${PROJECT_IS_TOP_LEVEL})

if(ZRQAR_HARDENING)
  add_compile_options(-fstack-protector-strong -fstack-clash-protection -fcf-protection=full
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-U_FORTIFY_SOURCE>  # without optimisation it only warns
    $<$<CONFIG:Release,RelWithDebInfo,MinSizeRel>:-D_FORTIFY_SOURCE=2>)
  add_link_options(LINKER:-z,relro LINKER:-z,now LINKER:-z,noexecstack)
endif()

# Marks a shared library as compatible with control-flow protection. The linker does so by itself only if every object
# is marked, and the C library's crti.o is not. Without DT_INIT and DT_FINI nothing calls code of that file.
function(zrqar_mark_control_flow target)
  if(ZRQAR_HARDENING)
    target_link_options(${target} PRIVATE LINKER:-z,ibt LINKER:-z,shstk LINKER:-init= LINKER:-fini=)
  endif()
endfunction()
