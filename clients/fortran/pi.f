C     Estimates pi with jobs that run at the same time, in the fixed form
C     of old programs: of this century it has but USE and the strings
C     that are as long as they need to be.
C
C     PI [SAMPLES]     SAMPLES is the number of points of each job
      PROGRAM PI
      USE VANTIRO
      IMPLICIT NONE
      INTEGER JOBS, RUN, INSIDE, DRAWN, I, N
      PARAMETER (JOBS = 16)
      CHARACTER*20 SAMPLS
      CHARACTER(LEN=:), ALLOCATABLE :: PATH
      CHARACTER*400 WORKER
      EXTERNAL DONE
      DATA SAMPLS /'1000000'/

      WORKER = 'awk -v s="$VANTIRO_PARAM_samples" -v j="$VANTIRO_JOB" '
     & // '''BEGIN { srand(j); while (d < s) { ++d; x = rand(); '
     & // 'y = rand(); n += x*x + y*y < 1 }; print n, d > "pi.txt"; '
     & // 'print n, d }'''

      IF (COMMAND_ARGUMENT_COUNT() .GT. 0)
     & CALL GET_COMMAND_ARGUMENT(1, SAMPLS)
      CALL CHECK(VANTIRO_INIT())
      RUN = VANTIRO_PEACH_HANDLE()
      CALL CHECK(RUN)
      CALL CHECK(VANTIRO_PEACH_SETNAME(RUN, 'pi'))
      CALL CHECK(VANTIRO_PEACH_SETJOBS(RUN, JOBS))
      CALL CHECK(VANTIRO_PEACH_SETEXECUTABLE(RUN, WORKER))
      CALL CHECK(VANTIRO_PEACH_PUTPROJECTPARAM(RUN, 'samples', SAMPLS))
      CALL CHECK(VANTIRO_PEACH_ADDOUTPUTFILE(RUN, 'pi.txt'))
      CALL CHECK(VANTIRO_PEACH_SETREMOVE(RUN, .TRUE.))
      CALL CHECK(VANTIRO_PEACH_SETINTERMEDIATERESULTHANDLER(RUN, DONE))
      CALL CHECK(VANTIRO_PEACH_EXECUTE(RUN))

      INSIDE = 0
      DRAWN = 0
   10 CALL CHECK(VANTIRO_PEACH_NEXTFILE(RUN, PATH))
      IF (LEN(PATH) .EQ. 0) GOTO 20
      OPEN (UNIT=7, FILE=PATH, STATUS='OLD')
      READ (7, *) I, N
      CLOSE (7)
      INSIDE = INSIDE + I
      DRAWN = DRAWN + N
      GOTO 10
   20 CALL CHECK(VANTIRO_PEACH_DONE(RUN))
      WRITE (*, '(A, F8.6)') 'pi is about ', 4D0 * INSIDE / DRAWN
      END

C     Ends the program with the words for a failure.
      SUBROUTINE CHECK(STATUS)
      USE VANTIRO
      IMPLICIT NONE
      INTEGER STATUS, IGNORE
      CHARACTER(LEN=:), ALLOCATABLE :: TEXT, DETAIL
      IF (STATUS .GE. 0) RETURN
      IGNORE = VANTIRO_DESCRIBESTATUSCODE(STATUS, TEXT)
      IGNORE = VANTIRO_GETLASTERRORMESSAGE(DETAIL)
      WRITE (*, '(A, I0, 4A)') 'status ', STATUS, ': ', TEXT, ', ',
     & DETAIL
      STOP 1
      END

C     Receives what a job prints.
      SUBROUTINE DONE(TEXT)
      IMPLICIT NONE
      CHARACTER*(*) TEXT
      INTENT(IN) TEXT
      WRITE (*, '(2A)') 'done: ', TEXT
      END
