// A second program for the tests: other_program WHAT FOLDER. It prints its process id when it has
// got where the test wants it, and stays there.
#include <unistd.h>
#include <vantiro.h>

#include <cstdio>
#include <string>

int main(int, char **arguments) {
  const std::string what = arguments[1], folder = arguments[2];
  if (vantiro_initFile((folder + "/settings").c_str()) != 0) return 1;
  if (what == "ended-project") {
    const int project = vantiro_createEmptyProject(vantiro_open(), 0, "other");
    vantiro_createProjectJobs(project, 1, "echo result");
    vantiro_markAllJobsCreated(project);
    vantiro_startProject(project);
    if (vantiro_waitCompletion(project) != 0) return 1;
  }
  std::printf("%d\n", getpid());
  std::fflush(stdout);
  const int project = what == "bundles" ? vantiro_createEmptyProject(vantiro_open(), 0, "p") : 0;
  while (project) {
    if (vantiro_approveUploadedBundles(project) < 0) return 1;
  }
  while (true) pause();
}
