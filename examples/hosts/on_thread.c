/*
 * Makes calls on a thread of its own, for hosts that call C functions on a stack that is not their
 * thread's, where no Java can run: on_thread("vantiro_peach_setJobs", run, 5). One call at a time.
 */
#include <dlfcn.h>
#include <pthread.h>
#include <stdint.h>
#include <stdio.h>

typedef int function(intptr_t, intptr_t, intptr_t, intptr_t);
static pthread_mutex_t one_at_a_time = PTHREAD_MUTEX_INITIALIZER, lock = PTHREAD_MUTEX_INITIALIZER;
static pthread_cond_t changed = PTHREAD_COND_INITIALIZER;
static pthread_t thread;
static function *wanted;
static intptr_t words[4];
static int result;

static void *serve(void *unused) {
  pthread_mutex_lock(&lock);
  for (;;) {
    while (!wanted) pthread_cond_wait(&changed, &lock);
    result = wanted(words[0], words[1], words[2], words[3]);
    wanted = NULL;
    pthread_cond_broadcast(&changed);
  }
  return unused;
}

int on_thread(const char *name, intptr_t a, intptr_t b, intptr_t c, intptr_t d) {
  function *found = (function *)dlsym(RTLD_DEFAULT, name);
  if (!found) return fprintf(stderr, "on_thread: there is no %s\n", name), -1;
  pthread_mutex_lock(&one_at_a_time);
  pthread_mutex_lock(&lock);
  if (!thread) pthread_create(&thread, NULL, serve, NULL);
  words[0] = a, words[1] = b, words[2] = c, words[3] = d, wanted = found;
  pthread_cond_broadcast(&changed);
  while (wanted) pthread_cond_wait(&changed, &lock);
  const int status = result;
  pthread_mutex_unlock(&lock);
  pthread_mutex_unlock(&one_at_a_time);
  return status;
}
