// Children: whoever loses its parent below the keeper becomes the keeper's own child, so killing
// children until there are none ends every process that a job ever started.

#include <ctype.h>
#include <dirent.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include "keeper.h"

// A process that hangs in the kernel does not end before the kernel lets it.
enum { PATIENCE_MS = 10000, PAUSE_MS = 1 };

static int64_t milliseconds(struct timeval time) {
  return (int64_t)time.tv_sec * 1000 + time.tv_usec / 1000;
}

static pid_t reap(int *status, struct usage *sum) {
  struct rusage usage;
  pid_t child = wait4(-1, status, WNOHANG, &usage);
  if (child <= 0) return child;
  sum->cpu_ms += milliseconds(usage.ru_utime) + milliseconds(usage.ru_stime);
  if (usage.ru_maxrss > sum->peak_kb) sum->peak_kb = usage.ru_maxrss;
  return child;
}

bool children_reap(pid_t wanted, int *status, struct usage *usage) {
  bool found = false;
  int raw;
  for (pid_t child; (child = reap(&raw, usage)) > 0;) {
    if (child != wanted) continue;
    found = true;
    *status = raw;
  }
  return found;
}

static pid_t parent_of(const char *process) {
  char path[64], text[512];
  snprintf(path, sizeof path, "/proc/%s/stat", process);
  int file = open(path, O_RDONLY | O_CLOEXEC);
  if (file < 0) return -1;
  ssize_t length = read(file, text, sizeof text - 1);
  close(file);
  if (length <= 0) return -1;
  text[length] = '\0';
  // The name in brackets may hold anything, brackets included.
  const char *end = strrchr(text, ')');
  char state;
  int parent;
  return end && sscanf(end + 1, " %c %d", &state, &parent) == 2 ? parent : -1;
}

bool children_has(pid_t parent, pid_t process) {
  char number[16];
  snprintf(number, sizeof number, "%d", (int)process);
  return parent_of(number) == parent;
}

int children_kill_once(bool (*spared)(pid_t)) {
  int killed = 0;
  DIR *processes = opendir("/proc");
  if (!processes) return 0;
  for (struct dirent *entry; (entry = readdir(processes));) {
    pid_t process = (pid_t)atoi(entry->d_name);
    if (!isdigit((unsigned char)entry->d_name[0]) || parent_of(entry->d_name) != getpid() ||
        (spared && spared(process))) {
      continue;
    }
    if (kill(process, SIGKILL) == 0) killed++;
  }
  closedir(processes);
  return killed;
}

// The same by the kernel's own list, where it has one: a thousand keepers that end at once must not
// each look at all processes. The list may miss some while others end; -1 when there is none.
static int kill_listed(void) {
  char path[64];
  snprintf(path, sizeof path, "/proc/self/task/%d/children", (int)getpid());
  FILE *list = fopen(path, "re");
  if (!list) return -1;
  int killed = 0;
  for (int process; fscanf(list, "%d", &process) == 1;) killed += kill(process, SIGKILL) == 0;
  fclose(list);
  return killed;
}

void children_kill(struct usage *usage) {
  int nothing_found = 0;
  for (const int64_t end = time_after(now_ms(), PATIENCE_MS); now_ms() < end;) {
    int status;
    pid_t child;
    while ((child = reap(&status, usage)) > 0) continue;
    if (child < 0) return;
    int killed = kill_listed();
    if (killed < 0) killed = children_kill_once(NULL);
    // What is left belongs to other users, who must not be waited for.
    nothing_found = killed == 0 ? nothing_found + 1 : 0;
    if (nothing_found > 1) return;
    const struct timespec pause = {0, PAUSE_MS * 1000000L};
    nanosleep(&pause, NULL);
  }
}
