! A run from Fortran, with the module of clients/fortran.
module receivers
contains
  subroutine receive(line)
    character(*), intent(in) :: line
    print '(2a)', 'line ', line
  end subroutine
end module

program host
  use vantiro
  use receivers
  integer :: run, status
  character(:), allocatable :: path, reason
  character(256) :: content
  if (vantiro_init() /= 0) stop 'the start failed: vantiro-doctor tells why'
  run = vantiro_peach_handle()
  status = vantiro_peach_setJobs(run, 5)
  status = vantiro_peach_setExecutable(run, 'echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square')
  status = vantiro_peach_addOutputFile(run, 'square')
  status = vantiro_peach_setIntermediateResultHandler(run, receive)
  if (vantiro_peach_execute(run) /= 0) stop 'the run failed'
  do
    if (vantiro_peach_nextFile(run, path) /= 0 .or. len(path) == 0) exit
    open (10, file=path); read (10, '(a)') content; close (10)
    print '(2a)', 'file ', trim(content)
  end do
  status = vantiro_setLogLevel('loud')
  if (vantiro_describeStatusCode(status, reason) == 0) print '(3a, i0, a)', 'failed: ', reason, ' (', status, ')'
  status = vantiro_peach_done(run)
  status = vantiro_unload(.true.)
end program
