# Fails unless a built file has what stops an overrun: a stack that is not executed and is watched,
# checked copies, tables that are not written after the start.
#
# FILE     the program or library
# READELF  the readelf program
# BINDING  now: all its functions are looked up at the start; lazy: each when it is called first
function(read_elf variable)
  execute_process(COMMAND ${READELF} -W ${ARGN} ${FILE} OUTPUT_VARIABLE output COMMAND_ERROR_IS_FATAL ANY)
  set(${variable} "${output}" PARENT_SCOPE)
endfunction()

read_elf(header -h)
read_elf(segments -l)
read_elf(dynamic -d)
read_elf(symbols --dyn-syms)

set(faults)
macro(require text pattern complaint)
  if(NOT "${${text}}" MATCHES "${pattern}")
    list(APPEND faults "${complaint}")
  endif()
endmacro()
require(header "Type: +DYN" "it is loaded at a fixed address")
require(segments "GNU_STACK [^\n]* RW  0x" "its stack may be executed")
require(segments "GNU_RELRO" "its tables stay writable")
require(symbols "__stack_chk_fail" "its stack is not watched")
require(symbols "__[a-z]+_chk" "its copies are not checked")
if(BINDING STREQUAL "now")
  require(dynamic "BIND_NOW" "it looks up functions late")
endif()
if(faults)
  list(JOIN faults "; " faults)
  message(FATAL_ERROR "${FILE}: ${faults}")
endif()
