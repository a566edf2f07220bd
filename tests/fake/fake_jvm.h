// A Java runtime that does what a test tells it to, and writes down what it is asked to do. Misuse
// that would crash a real machine ends the process with a message.
#pragma once

#include <jni.h>

#include <string>
#include <vector>

namespace fake {

// What was called since the last time this was asked, one line for each call; with `start` only
// the lines that begin with it.
std::string trace(const std::string &start = "");

// What a Java method does. Unless told, it gives 0, an empty string or a new object. Told for "",
// it holds for every method that nothing else is told of.
void returns(const std::string &method, jlong number, const std::string &text = "");
void returns_text(const std::string &method, const std::string &text);
void returns_null(const std::string &method);
void throws(const std::string &method);

// There is no class "a/b/C", or no method "C.name" whatever its descriptor.
void lacks(const std::string &what);

// The function of the runtime fails at its n-th call from now on.
void fail(const std::string &function, int nth = 1);

// The n-th call from now on fails that can fail, whichever it is, or that one and all behind it.
// Zero: none.
void fail_any(int nth, bool and_all_behind = false);
// The functions of such calls since.
std::vector<std::string> fallible_calls();

// From now on nothing is written down and nothing fails: threads do not meet in here.
void be_quiet();

// The calling thread's local references and methods are gone, as after a frame of them.
void forget_references();

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
