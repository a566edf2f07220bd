// Signals come through a descriptor, so that one poll waits for them and for input alike.

#include <signal.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include "keeper.h"

int signals_open(void) {
  sigset_t all;
  sigfillset(&all);
  // A host that ignores the ends of its children has handed that on.
  signal(SIGCHLD, SIG_DFL);
  sigprocmask(SIG_BLOCK, &all, NULL);
  return signalfd(-1, &all, SFD_NONBLOCK | SFD_CLOEXEC);
}

int signals_next(int descriptor) {
  struct signalfd_siginfo info;
  return read(descriptor, &info, sizeof info) == sizeof info ? (int)info.ssi_signo : 0;
}

void signals_restore(void) {
  for (int number = 1; number < NSIG; number++) signal(number, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, NULL);
}
