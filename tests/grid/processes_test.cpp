// The processes of jobs: none outlives its job, no job its program.
#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

#include "grid_test.h"

namespace {

class Processes : public GridTest {
 protected:
  // A line of a job that starts what is hard to find again, and waits until it is there.
  std::string with_hidden_children(const std::string &then) const {
    const std::string note = "echo $$ >>" + path("pids") + "; exec sleep 600";
    const std::string hide = "exec >&- 2>&- <&-; " + note;
    return "env -i setsid sh -c '" + hide + "' & (trap '' TERM HUP; (" + hide +
           ") &) & env -i nohup sh -c '" + hide + "' & while [ $(wc -l <" + path("pids") +
           ") -lt 3 ]; do sleep 0.02; done; " + then;
  }

  int start(const std::string &line) {
    write("pids", "");
    const int project = vantiro_createEmptyProject(vantiro_open(), 0, "p");
    vantiro_createProjectJobs(project, 1, line.c_str());
    vantiro_markAllJobsCreated(project);
    EXPECT_EQ(vantiro_startProject(project), 0) << last_error();
    return project;
  }

  int running() const {
    std::ifstream pids(path("pids"));
    int found = 0;
    for (std::string pid; pids >> pid;) found += !read("/proc/" + pid + "/cmdline").empty();
    return found;
  }

  void await_hidden_children() const {
    while (running() < 3) usleep(10000);
  }

  // Runs another program until it ends by itself or by the signal; its status as a shell's.
  int end_of_other(const std::string &how, int signal_number) {
    write("pids", "");
    write("job", with_hidden_children("sleep 600"));
    const pid_t program = fork();
    if (program == 0) {
      execl(OTHER_PROGRAM, OTHER_PROGRAM, how.c_str(), scratch.c_str(), nullptr);
      _exit(127);
    }
    await_hidden_children();
    write("go", "");
    if (signal_number) kill(program, signal_number);
    int status = 0;
    const time_t begin = time(nullptr);
    waitpid(program, &status, 0);
    EXPECT_LT(time(nullptr) - begin, 10) << how;
    fs::remove(path("go"));
    return WIFSIGNALED(status) ? 128 + WTERMSIG(status) : WEXITSTATUS(status);
  }
};

}  // namespace

TEST_F(Processes, EndWithTheirJob) {
  const int ended = start(with_hidden_children("exit 0"));
  EXPECT_EQ(vantiro_waitCompletion(ended), 0) << last_error();
  EXPECT_EQ(running(), 0) << "after the end";

  const int stopped = start(with_hidden_children("sleep 600"));
  await_hidden_children();
  EXPECT_EQ(vantiro_stopProject(stopped), 0);
  EXPECT_EQ(running(), 0) << "after stopProject";

  start(with_hidden_children("sleep 600"));
  await_hidden_children();
  EXPECT_EQ(vantiro_unload(1), 0);
  EXPECT_EQ(running(), 0) << "after unload";

  ASSERT_EQ(vantiro_initWithoutFile(path("home").c_str(), "", "", "", 0, "", "", 1, 0, "", ""), 0);
  const int late = start(with_hidden_children("sleep 600"));
  EXPECT_EQ(vantiro_waitCompletion(late), -5);
  EXPECT_TRUE(contains(last_error(), "timed out after 1 s")) << last_error();
  EXPECT_EQ(running(), 0) << "after the timeout";
}

TEST_F(Processes, EndWithWhatLooksAfterThem) {
  const int project = start(with_hidden_children("kill -KILL $PPID; sleep 600"));
  EXPECT_EQ(vantiro_waitCompletion(project), -5);
  EXPECT_TRUE(contains(last_error(), "was killed") || contains(last_error(), "before the job did"))
      << last_error();
  while (running() > 0) usleep(10000);

  const int orphaned = start(with_hidden_children(
      "kill -KILL $(sed 's/.*) . \\([0-9]*\\).*/\\1/' /proc/$PPID/stat); sleep 600"));
  EXPECT_EQ(vantiro_waitCompletion(orphaned), -5);
  while (running() > 0) usleep(10000);

  EXPECT_EQ(vantiro_waitCompletion(start("true")), 0) << "another one takes its place";
}

TEST_F(Processes, EndWithTheirProgram) {
  // One job is slow to end, so that there is time to be told of the end of another.
  write("launcher", "grep -q slow \"$3\" && trap '' TERM; \"$@\"");
  write("settings", "grid.home=" + path("home") + "\njob.cancel.wait=1\njob.launcher=sh " +
                        path("launcher") + "\n");
  const struct {
    const char *how;
    int signal_number, status;
  } ends[] = {{"return", 0, 0},       {"_exit", 0, 3},        {"abort", 0, 128 + SIGABRT},
              {"wait", SIGKILL, 137}, {"fork", SIGTERM, 143}, {"wait", SIGINT, 130},
              {"wait", SIGHUP, 129}};
  for (const auto &end : ends) {
    EXPECT_EQ(end_of_other(end.how, end.signal_number), end.status) << end.how;
    EXPECT_FALSE(fs::exists(path("told"))) << "a job that ended with its program did not fail";
    while (running() > 0) usleep(10000);
  }
}

TEST_F(Processes, HaveWhatTheProgramHasWhenTheirProjectStarts) {
  const auto now = [&] {
    vantiro_waitCompletion(
        start("echo $WORD $(umask) $(grep CapBnd /proc/self/status) >" + path("now")));
    return read(path("now"));
  };
  umask(0022);
  setenv("WORD", "one", 1);
  // Its keeper, from before the changes, is there all the time.
  start("exec sleep 600");
  const std::string before = now();
  EXPECT_TRUE(contains(before, "one ")) << before;
  // One at a time: each has to be enough for a keeper of its own.
  setenv("WORD", "two", 1);
  const std::string second = now();
  EXPECT_TRUE(contains(second, "two 0022 ")) << second;
  umask(0137);
  EXPECT_TRUE(contains(now(), "two 0137 "));
  // A launcher's jobs have the rights that its engine gives them.
  if (prctl(PR_CAPBSET_DROP, CAP_NET_RAW) == 0 && !getenv("VANTIRO_SETTINGS")) {
    EXPECT_FALSE(contains(now(), before.substr(before.find("CapBnd")))) << "a right given up";
  }
}

TEST_F(Processes, AreStartedAsTheyAreGiven) {
  const int project = vantiro_createEmptyProject(vantiro_open(), 0, "p");
  for (const char *word : {"exit", "set", "cd", "no such"}) vantiro_createJob(project, 1, word);
  const std::string large(10 << 20, 'x');
  vantiro_createJob(project, 2, "echo", large.c_str());
  vantiro_markAllJobsCreated(project);
  vantiro_startProject(project);
  EXPECT_EQ(vantiro_waitCompletion(project), -5);
  for (const char *part :
       {"exit: exit status 127 (command not found)", "set: exit status 127", "cd: exit status 127",
        "no such: exit status 127", "Argument list too"}) {
    EXPECT_TRUE(contains(last_error(), part)) << part << " in " << last_error();
  }
  EXPECT_LT(last_error().size(), 2000u);
}
