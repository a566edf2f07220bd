// The processes of a keeper that look after one job each.
#ifndef VANTIRO_SUPERVISORS_H
#define VANTIRO_SUPERVISORS_H

#include <poll.h>

#include "keeper.h"

// Starts one for the job that a message describes; with a trouble, says that it cannot be.
void supervisors_run(int64_t id, const struct message *description, const char *trouble);
// One that is halted goes on, so that it hears this.
void supervisor_stop(int64_t id);
// Hands a line on; false without memory.
bool supervisor_input(int64_t id, const char *line);
void supervisors_stop(void);
void supervisors_wake(void);

size_t supervisors_count(void);
bool supervisor_is(pid_t process);

// What to wait for: those given, then one for each supervisor. NULL without memory.
struct pollfd *supervisors_poll(const struct pollfd *others, size_t other_count, size_t *count);
// Takes what they say and gives them their input; NULL when nobody knows where something came.
void supervisors_hear(const struct pollfd *heard);
// Whether one was killed, so that what it looked after is now the keeper's.
bool supervisors_reap(void);

#endif
