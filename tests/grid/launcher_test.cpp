// Jobs handed to a launcher: what passes through it, and what is believed of it.
#include <unistd.h>

#include <csignal>

#include "grid_test.h"

namespace {

class Launcher : public GridTest {
 protected:
  // A script is the launcher; what it is to run are its arguments.
  void launch_with(const std::string &script, const std::string &settings = "") {
    const std::string lines = "grid.home=" + path("home") + "\njob.launcher=sh " +
                              write("launcher", "cd " + scratch + "\n" + script) + "\n" + settings;
    ASSERT_EQ(vantiro_initFile(write("settings", lines).c_str()), 0) << last_error();
  }

  int start(const std::string &line) const {
    const int project =
        vantiro_createProject(vantiro_open(), 4, "p", 1, "text=two\n lines 'q' \"Q\"");
    vantiro_createProjectJobs(project, 1, line.c_str());
    vantiro_markAllJobsCreated(project);
    EXPECT_EQ(vantiro_startProject(project), 0) << last_error();
    return project;
  }

  static std::string statistic(int project, const char *name) {
    return text_of(
        [&](char *b, unsigned int *s) { return vantiro_getProjectStatistic(project, name, b, s); });
  }

  bool runs() const { return !read("/proc/" + first_word(read(path("pid"))) + "/cmdline").empty(); }
  static std::string first_word(const std::string &text) { return text.substr(0, text.find('\n')); }

  void await(const std::string &file) const {
    while (read(path(file)).empty()) usleep(10000);
  }
};

}  // namespace

TEST_F(Launcher, HandsOnWhatTheJobIsAndHowItEnds) {
  launch_with("echo by $VANTIRO_PRIORITY >log; echo noise; exec env -i FAR=side \"$@\"");
  const int project = start("echo $FAR >" + path("out") + "; printf %s \"$VANTIRO_PARAM_text\" >>" +
                            path("out") + "; read line; echo \"$line\" >&2; exit 3");
  EXPECT_EQ(vantiro_sendJobPostParameter(project, 1, "from afar"), 0);
  EXPECT_EQ(vantiro_waitCompletion(project), -5);
  EXPECT_EQ(read(path("out")), "side\ntwo\n lines 'q' \"Q\"");
  EXPECT_EQ(read(path("log")), "by 4\n");
  EXPECT_TRUE(contains(last_error(), "exit status 3\nfrom afar")) << last_error();
  EXPECT_FALSE(contains(last_error(), "noise")) << last_error();
}

TEST_F(Launcher, IsNotBelieved) {
  launch_with("echo the queue is full", "job.cancel=echo $VANTIRO_NAME >" + path("cancelled"));
  const int project = start("touch " + path("ran"));
  EXPECT_EQ(vantiro_waitCompletion(project), -5);
  EXPECT_TRUE(contains(last_error(), "the launcher ended with status 0 before the job did"))
      << last_error();
  EXPECT_TRUE(contains(last_error(), "the launcher said:\nthe queue is full")) << last_error();
  EXPECT_TRUE(contains(read(path("cancelled")), "vantiro-")) << "something may be left behind";
  EXPECT_FALSE(fs::exists(path("ran")));
}

TEST_F(Launcher, CountsAJobAsWaitingUntilItHasBegun) {
  launch_with("touch queued; while ! [ -e free ]; do sleep 0.02; done; exec \"$@\"",
              "job.timeout=1");
  const int project = start("sleep 600");
  while (!fs::exists(path("queued"))) usleep(10000);
  usleep(1100000);
  EXPECT_EQ(statistic(project, "waiting") + statistic(project, "running"), "10");
  write("free", "");
  EXPECT_EQ(vantiro_waitCompletion(project), -5);
  EXPECT_TRUE(contains(last_error(), "timed out after 1 s")) << last_error();
}

TEST_F(Launcher, IsAskedBeforeItIsKilled) {
  launch_with("trap 'echo asked >>log' TERM; echo $$ >pid; while :; do sleep 0.05; done",
              "job.cancel.wait=1\njob.cancel=echo cancelled >>" + path("log"));
  const int project = start("true");
  await("pid");
  EXPECT_EQ(vantiro_stopProject(project), 0);
  EXPECT_EQ(read(path("log")), "asked\ncancelled\n");
  EXPECT_FALSE(runs());
}

TEST_F(Launcher, ThatIsLostTakesItsJobAlong) {
  // The far side ignores what is sent to its launcher, and hears only that its input has ended.
  launch_with("trap '' TERM HUP; cat | setsid env -i \"$@\"", "job.cancel.wait=1");
  const int project = start("echo $$ >" + path("pid") + "; exec sleep 600");
  while (statistic(project, "running") != "1") usleep(10000);
  await("pid");
  EXPECT_EQ(vantiro_stopProject(project), 0);
  while (runs()) usleep(10000);
}
