// Bytes that wait until somebody takes them.
#ifndef VANTIRO_QUEUE_H
#define VANTIRO_QUEUE_H

#include <stdbool.h>
#include <stddef.h>

struct queue {
  char *bytes;
  size_t begin, end, capacity;
};

static inline bool queue_is_empty(const struct queue *queue) { return queue->begin == queue->end; }
// False when there is no memory.
bool queue_add(struct queue *queue, const void *bytes, size_t size);
void queue_free(struct queue *queue);

#endif
