// The calls that are measured, as a careful programmer writes them in JNI without the library:
// attached on every call, looked up on every call, and every exception seen to.
#pragma once

namespace by_hand {

int getLastError(int value);
int setLogLevel(const char *level);
int getUserLogin(char *buffer, unsigned int *size);
int setProjectParams(int project, int count, const char **list);
int peach_setName(int handle, const char *text);

}  // namespace by_hand
