# Warnings are errors, in everything that is this project's own.
add_library(vantiro_warnings INTERFACE)
target_compile_options(vantiro_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Werror
  $<$<COMPILE_LANGUAGE:CXX>:-Wmissing-declarations>
  $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes -Wmissing-prototypes>)
