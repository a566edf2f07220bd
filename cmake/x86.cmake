# Toolchain: 32-bit programs by the compiler of a 64-bit machine.

set(CMAKE_C_FLAGS_INIT "-m32 -march=i686")
set(CMAKE_CXX_FLAGS_INIT "-m32 -march=i686")

# Asked here, since a compiler that fails CMake's own test does not say what is missing.
file(WRITE "${CMAKE_BINARY_DIR}/m32.cpp" "#include <cstdlib>\nint main() {}\n")
execute_process(
  COMMAND c++ -m32 "${CMAKE_BINARY_DIR}/m32.cpp" -o "${CMAKE_BINARY_DIR}/m32"
  RESULT_VARIABLE m32_result
  OUTPUT_QUIET ERROR_QUIET)
if(NOT m32_result EQUAL 0)
  message(FATAL_ERROR
    "The compiler cannot make 32-bit programs. Install the package g++-multilib "
    "(scripts/setup does), or build for this machine's own word size with --preset native.")
endif()
