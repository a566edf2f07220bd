! The Fortran module: what goes in and comes out of each kind of parameter.
program fortran_test
  use vantiro
  implicit none
  character(:), allocatable :: text
  character(400000) :: long
  integer :: project, place, status, faults

  faults = 0
  long = repeat('x', len(long))
  call expect(vantiro_open() == -11, 'a call before the start is refused')
  status = vantiro_getUserLogin(text)
  call expect(status == -11 .and. text == '', 'so is one that gives a string')
  call get_environment_variable('PWD', value=long(:200))
  status = vantiro_initWithoutFile(trim(long(:200))//'/fortran-grid', repeat('x', len(long)), &
    '', '', 0, 'OFF  ', '', 0, 0, '', '')
  call expect(status == 0, 'the start')

  status = vantiro_getUserLogin(text)
  call expect(len(text) == len(long) .and. verify(text, 'x') == 0, 'a long string')
  project = vantiro_createProject(vantiro_open(), 0, ' blanks  ', ['a=1     ', 'long=b c'])
  call expect(project > 0, 'a list')
  status = vantiro_getProjectDescription(project, text)
  call expect(index(text, ' blanks') > 0 .and. index(text, 'blanks  ') == 0, 'blanks at the end are none')
  status = vantiro_getProjectParamValue(project, 'a', text)
  call expect(text == '1' .and. len(text) == 1, 'neither in a list: '//text)
  place = 1
  status = vantiro_getProjectParamName(project, place, text)
  call expect(text == 'long' .and. place == 2, 'a string of a list: '//text)
  status = vantiro_getProjectParamName(project, place, text)
  call expect(status == -24 .and. text == '', 'no string of a list')
  status = vantiro_createBundle(project, 'n', '1', '', '', '', '', '', '', '', ['f'], ['i1', 'i2'])
  call expect(status < 0, 'two lists')
  status = vantiro_getLastErrorMessage(text)
  call expect(index(text, 'f') > 0, 'the words for a failure: '//text)
  call expect(vantiro_setStreamResults(project, .true.) == 0, 'a flag')
  call expect(vantiro_unload2(.true., .true.) == 0, 'the end')
  if (faults > 0) stop 1

contains

  subroutine expect(holds, what)
    logical, intent(in) :: holds
    character(*), intent(in) :: what
    if (holds) return
    print *, 'not so: ', what
    faults = faults + 1
  end subroutine
end program
