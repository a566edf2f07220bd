#include "queue.h"

#include <stdlib.h>
#include <string.h>

bool queue_add(struct queue *queue, const void *bytes, size_t size) {
  if (queue->capacity - queue->end < size && queue->begin > 0) {
    queue->end -= queue->begin;
    memmove(queue->bytes, queue->bytes + queue->begin, queue->end);
    queue->begin = 0;
  }
  if (queue->capacity - queue->end < size) {
    const size_t capacity = 2 * queue->capacity + size;
    char *more = realloc(queue->bytes, capacity);
    if (!more) return false;
    queue->bytes = more;
    queue->capacity = capacity;
  }
  memcpy(queue->bytes + queue->end, bytes, size);
  queue->end += size;
  return true;
}

void queue_free(struct queue *queue) {
  free(queue->bytes);
  *queue = (struct queue){0};
}
