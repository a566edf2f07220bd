// What is the matter with a file, in words.
#pragma once

#include <string>
#include <vector>

namespace doctor {

// Why the file at `path` cannot be read as a regular file, to be put behind its name: "does not
// exist: there is no /opt/java". Empty when it can.
std::string why_unreadable(const std::string &path);

bool is_readable(const std::string &path);
bool exists(const std::string &path);

// The path up to its last '/', "." without one, and what follows it.
std::string directory_of(const std::string &path);
std::string name_of(const std::string &path);

// The path without links; the path itself when it leads nowhere.
std::string real_path(const std::string &path);

std::vector<std::string> names_in(const std::string &directory);

// The word size of the programs that a library is for, or of a program; 0 for any other file.
int bits_of(const std::string &path);

}  // namespace doctor
