// A Java runtime that does what a test tells it to, and writes down what it is asked to do. Misuse
// that would crash a real machine ends the process with a message.
#pragma once

#include <jni.h>

#include <string>

namespace fake {

// What was called since the last time this was asked, one line for each call; with `start` only
// the lines that begin with it.
std::string trace(const std::string &start = "");

// What a Java method does. Unless told, it gives 0, an empty string or a new object.
void returns(const std::string &method, jlong number);
void returns_text(const std::string &method, const std::string &text);
void returns_null(const std::string &method);
void throws(const std::string &method);

// There is no class "a/b/C", or no method "C.name" whatever its descriptor.
void lacks(const std::string &what);

// The function of the runtime fails at its n-th call from now on.
void fail(const std::string &function, int nth = 1);

// The n-th call from now on fails that can fail, whichever it is. Zero: none.
void fail_any(int nth);
// How many such calls there were since.
int fallible_calls();

// Forgets all of the above; what was looked up and created stays.
void behave();

// A machine of the host's own runs, to which no thread is attached; or none does.
void run_machine();
void stop_machine();

// The exception that is pending in the calling thread.
std::string pending();

// How many characters were obtained and not released.
int unreleased_characters();

// As the Java side does for each intermediate result: calls the native method that is registered.
void deliver(const char *text);

}  // namespace fake
