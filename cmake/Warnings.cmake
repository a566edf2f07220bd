# Warnings are errors, in everything that is this project's own. In a project that takes this one in
# they stay warnings: its compiler may know more of them.
add_library(vantiro_warnings INTERFACE)
target_compile_options(vantiro_warnings INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow $<$<BOOL:${PROJECT_IS_TOP_LEVEL}>:-Werror>
  $<$<COMPILE_LANGUAGE:CXX>:-Wmissing-declarations>
  $<$<COMPILE_LANGUAGE:C>:-Wstrict-prototypes -Wmissing-prototypes>)
