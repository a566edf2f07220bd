! A run from Fortran, with the interfaces of host_f.f90.
module receiver
  use grid
contains
  subroutine receive(line) bind(C)
    character(c_char), intent(in) :: line(*)
    integer :: length
    length = 0
    do while (line(length + 1) /= nul); length = length + 1; end do
    print '(256a)', 'line ', line(:length)
  end
end module
program host
  use receiver
  integer(c_int) :: run, size, status
  character(4096) :: path, content
  if (init() /= 0) stop 'the start failed: vantiro-doctor tells why'
  run = new_run()
  status = set_jobs(run, 5)
  status = set_executable(run, 'echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square' // nul)
  status = add_output(run, 'square' // nul)
  status = set_receiver(run, c_funloc(receive))
  if (execute(run) /= 0) stop 'the run failed'
  do
    size = len(path)
    if (next_file(run, path, size) /= 0 .or. size < 2) exit
    open (10, file=path(:size - 1)); read (10, '(a)') content; close (10)
    print '(2a)', 'file ', trim(content)
  end do
  status = set_log_level('loud' // nul)
  size = len(path)
  if (describe(status, path, size) == 0) print '(3a, i0, a)', 'failed: ', path(:size - 1), ' (', status, ')'
  status = done(run)
end program
