// A second program for the tests: other_program WHAT FOLDER.
#include <unistd.h>
#include <vantiro.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>

namespace {

int start(const std::string &line) {
  const int project = vantiro_createEmptyProject(vantiro_open(), 0, "other");
  vantiro_createProjectJobs(project, 1, line.c_str());
  vantiro_markAllJobsCreated(project);
  vantiro_startProject(project);
  return project;
}

// Says that it has got where the test wants it, and stays there.
[[noreturn]] void stay() {
  std::printf("%d\n", getpid());
  std::fflush(stdout);
  while (true) pause();
}

}  // namespace

int main(int, char **arguments) {
  const std::string what = arguments[1], folder = arguments[2];
  if (vantiro_initFile((folder + "/settings").c_str()) != 0) return 1;
  if (what == "ended-project") {
    if (vantiro_waitCompletion(start("echo result")) != 0) return 1;
    stay();
  }
  if (what == "bundles") {
    std::printf("%d\n", getpid());
    std::fflush(stdout);
    const int project = vantiro_createEmptyProject(vantiro_open(), 0, "p");
    while (vantiro_approveUploadedBundles(project) >= 0) continue;
    return 1;
  }
  if (what == "peach") {
    const std::string started = folder + "/other-started", state = "stateDir=" + folder + "/state";
    std::thread([&] {
      vantiro_peach(2, ("executable=touch " + started + "; sleep 1000").c_str(), state.c_str());
    }).detach();
    while (access(started.c_str(), F_OK) != 0) usleep(10000);
    stay();
  }
  std::stringstream job;
  job << std::ifstream(folder + "/job").rdbuf();
  const int project = start(job.str());
  // A child that holds all that its parent has open.
  const pid_t child = what == "fork" ? fork() : -1;
  if (child == 0) {
    while (access(folder.c_str(), F_OK) == 0) usleep(10000);
    _exit(0);
  }
  if (what == "wait" || what == "fork") {
    start("sleep 600 # slow");
    vantiro_waitCompletion(project);
    std::ofstream(folder + "/told") << "the wait has returned";
  }
  while (access((folder + "/go").c_str(), F_OK) != 0) usleep(10000);
  if (what == "_exit") _exit(3);
  if (what == "abort") std::abort();
}
