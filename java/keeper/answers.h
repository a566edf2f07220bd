// The way to the program: each message goes whole or waits, and nobody waits for a program that
// does not read.
#ifndef VANTIRO_ANSWERS_H
#define VANTIRO_ANSWERS_H

#include "message.h"

void answers_open(int pipe);
void answers_send(const struct answer *answer);
// Whether some wait until the pipe has room.
bool answers_wait(void);
void answers_flush(void);

#endif
