# Fails unless the add-on exports its entry point alone, refers weakly to the one host function that
# a host may lack, and needs no library but libc's own.
#
# MODULE    the built add-on
# NM        the nm program
# SANITIZE  sanitizers it was built with; they bring libraries of their own
function(read_lines variable)
  execute_process(COMMAND ${ARGN} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  string(STRIP "${output}" output)
  string(REPLACE "\n" ";" lines "${output}")
  set(${variable} "${lines}" PARENT_SCOPE)
endfunction()

read_lines(exported ${NM} -D --defined-only ${MODULE})
if(NOT exported MATCHES "^[0-9a-f]+ T InitQelAddOn113$")
  message(FATAL_ERROR "The add-on must export InitQelAddOn113 alone, but exports: ${exported}")
endif()

read_lines(undefined ${NM} -D --undefined-only ${MODULE})
set(weak ${undefined})
list(FILTER weak INCLUDE REGEX "^ *w Qel")
string(STRIP "${weak}" weak)
if(NOT weak STREQUAL "w QelUtilExtensionGet")
  message(FATAL_ERROR "Only QelUtilExtensionGet may be missing in a host, but weak are: ${weak}")
endif()

if(NOT SANITIZE)
  read_lines(needed ldd ${MODULE})
  list(FILTER needed EXCLUDE REGEX "linux-vdso|ld-linux|lib(c|m)\\.so")
  if(needed)
    message(FATAL_ERROR "The add-on must not need: ${needed}")
  endif()
endif()
