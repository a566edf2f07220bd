/* A program that loads the library it is given and starts it: 0 when the initialiser succeeds. */
#include <dlfcn.h>
#include <stdio.h>

int main(int count, char **arguments) {
  void *library = count > 1 ? dlopen(arguments[1], RTLD_NOW) : NULL;
  int (*init)(void) = NULL;
  int status;
  if (library) *(void **)&init = dlsym(library, "vantiro_init");
  if (!init) return 1;
  status = init();
  printf("status %d\n", status);
  return status < 0;
}
