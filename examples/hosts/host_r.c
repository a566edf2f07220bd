/* What R needs beside its own .Call, for any function of the library: calls by name. */
#include <Rinternals.h>
#include <dlfcn.h>
#include <stdint.h>
#include <vantiro.h>

static SEXP receiver;

/* An error in R must not leave the receiver: R_tryEval prints it. */
static void receive(const char *line) {
  SEXP call = PROTECT(Rf_lang2(receiver, Rf_mkString(line)));
  R_tryEval(call, R_GlobalEnv, NULL);
  UNPROTECT(1);
}

SEXP set_receiver(SEXP run, SEXP function) {
  R_PreserveObject(receiver = function);
  return Rf_ScalarInteger(vantiro_peach_setIntermediateResultHandler(Rf_asInteger(run), receive));
}

/* Up to four numbers and strings. */
SEXP call(SEXP name, SEXP list) {
  int (*function)(intptr_t, intptr_t, intptr_t, intptr_t) =
      dlsym(RTLD_DEFAULT, CHAR(Rf_asChar(name)));
  intptr_t words[4] = {0};
  if (!function) Rf_error("there is no %s", CHAR(Rf_asChar(name)));
  for (int i = 0; i < Rf_length(list) && i < 4; ++i) {
    SEXP value = VECTOR_ELT(list, i);
    words[i] = Rf_isString(value) ? (intptr_t)CHAR(Rf_asChar(value)) : Rf_asInteger(value);
  }
  return Rf_ScalarInteger(function(words[0], words[1], words[2], words[3]));
}

SEXP text(SEXP name, SEXP argument) {
  int (*function)(int, char *, unsigned int *) = dlsym(RTLD_DEFAULT, CHAR(Rf_asChar(name)));
  char buffer[4096] = "";
  unsigned int size = sizeof buffer;
  if (!function || function(Rf_asInteger(argument), buffer, &size) != 0)
    Rf_error("there is no text");
  return Rf_mkString(buffer);
}
