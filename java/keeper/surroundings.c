// What a process hands on to those that it starts, beside its directory and its open files.

#include <fcntl.h>
#include <inttypes.h>
#include <stdint.h>
#include <stdio.h>
#include <string.h>
#include <unistd.h>

#include "keeper.h"

// FNV-1a.
static uint64_t hash(uint64_t so_far, const char *bytes, size_t size) {
  for (size_t i = 0; i < size; i++) so_far = (so_far ^ (unsigned char)bytes[i]) * 1099511628211u;
  return so_far;
}

static const uint64_t NOTHING = 14695981039346656037u;

// The lines of a file that begin with one of the words; all when there are none.
static bool hash_lines(const char *path, const char *const *words, uint64_t *sum) {
  FILE *file = fopen(path, "re");
  if (!file) return false;
  char line[1024];
  bool counts = false, at_start = true;
  while (fgets(line, sizeof line, file)) {
    const size_t length = strlen(line);
    if (at_start) {
      counts = !words;
      for (const char *const *word = words; word && *word; word++) {
        counts |= strncmp(line, *word, strlen(*word)) == 0;
      }
    }
    if (counts) *sum = hash(*sum, line, length);
    // The groups of a process may take more than one piece.
    at_start = line[length - 1] == '\n';
  }
  fclose(file);
  return true;
}

bool surroundings(char *text, size_t size) {
  static const char *const of_rights[] = {"Uid:",        "Gid:",    "Groups:", "Cap",
                                          "NoNewPrivs:", "Seccomp", NULL};
  static const char *const of_umask[] = {"Umask:", NULL};
  uint64_t rights = NOTHING, mask = NOTHING, limits = NOTHING, environment = NOTHING;
  if (!hash_lines("/proc/self/status", of_rights, &rights) ||
      !hash_lines("/proc/self/status", of_umask, &mask) ||
      !hash_lines("/proc/self/limits", NULL, &limits)) {
    return false;
  }
  for (char **variable = environ; *variable; variable++) {
    environment = hash(environment, *variable, strlen(*variable) + 1);
  }
  snprintf(text, size,
           "rights:%" PRIx64 " umask:%" PRIx64 " limits:%" PRIx64 " environment:%" PRIx64, rights,
           mask, limits, environment);
  return true;
}

const char *surroundings_trouble(void) {
  char shown[32];
  const ssize_t length = readlink("/proc/self", shown, sizeof shown - 1);
  shown[length > 0 ? length : 0] = '\0';
  char own[32];
  snprintf(own, sizeof own, "%d", (int)getpid());
  return strcmp(shown, own) == 0
             ? NULL
             : "/proc does not show this program's processes, so what jobs start could not be "
               "ended: mount the /proc of its process namespace (unshare --mount-proc does)";
}
