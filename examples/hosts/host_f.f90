! The functions that host.f90 calls. Fortran folds the case of names: bind(C) keeps it.
module grid
  use, intrinsic :: iso_c_binding, only: c_int, c_funptr, c_funloc, c_char, nul => c_null_char
  abstract interface
    integer(c_int) function plain() bind(C); import; end
    integer(c_int) function of_run(run) bind(C); import; integer(c_int), value :: run; end
    integer(c_int) function number(run, value) bind(C); import; integer(c_int), value :: run, value; end
    integer(c_int) function text(run, value) bind(C); import
      integer(c_int), value :: run; character(c_char) :: value(*); end
    integer(c_int) function level(value) bind(C); import; character(c_char) :: value(*); end
    integer(c_int) function answer(number, text, size) bind(C); import
      integer(c_int), value :: number; character(c_char) :: text(*); integer(c_int) :: size; end
    integer(c_int) function taker(run, to) bind(C); import; integer(c_int), value :: run; type(c_funptr), value :: to; end
  end interface
  procedure(plain), bind(C, name='vantiro_init') :: init
  procedure(plain), bind(C, name='vantiro_peach_handle') :: new_run
  procedure(of_run), bind(C, name='vantiro_peach_execute') :: execute
  procedure(of_run), bind(C, name='vantiro_peach_done') :: done
  procedure(number), bind(C, name='vantiro_peach_setJobs') :: set_jobs
  procedure(text), bind(C, name='vantiro_peach_setExecutable') :: set_executable
  procedure(text), bind(C, name='vantiro_peach_addOutputFile') :: add_output
  procedure(answer), bind(C, name='vantiro_peach_nextFile') :: next_file
  procedure(answer), bind(C, name='vantiro_describeStatusCode') :: describe
  procedure(level), bind(C, name='vantiro_setLogLevel') :: set_log_level
  procedure(taker), bind(C, name='vantiro_peach_setIntermediateResultHandler') :: set_receiver
end module
