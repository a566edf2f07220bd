// The state directory of a parallel-each run: whose files are in it, and for which run.
#include <thread>

#include "grid_test.h"

namespace {

class State : public GridTest {
 protected:
  int new_run(const std::string &line, int jobs, const char *output = "out") {
    const int run = vantiro_peach_handle();
    EXPECT_GT(run, 0) << last_error();
    vantiro_peach_setExecutable(run, line.c_str());
    vantiro_peach_setJobs(run, jobs);
    vantiro_peach_setStateDir(run, path("state").c_str());
    vantiro_peach_addOutputFile(run, output);
    return run;
  }

  static std::string message(int run) {
    return text_of(
        [&](char *b, unsigned int *s) { return vantiro_peach_getLastErrorMessage(run, b, s); });
  }

  static std::string next_file(int run) {
    return text_of([&](char *b, unsigned int *s) { return vantiro_peach_nextFile(run, b, s); });
  }

  // All that is below the state directory, but the grid's own two files.
  std::set<std::string> state() const {
    std::set<std::string> names;
    for (const auto &entry : fs::recursive_directory_iterator(path("state"))) {
      const std::string name = fs::relative(entry.path(), path("state"));
      if (name[0] != '.') names.insert(name);
    }
    return names;
  }
};

}  // namespace

TEST_F(State, LosesOnlyWhatAnEarlierRunWrote) {
  for (const char *name : {"job-1/mine", "job-notes/text", "job-2x", "inputs/param.jar"}) {
    write(std::string("state/") + name, "mine");
  }
  fs::create_directories(path("state/job-9"));
  const std::set<std::string> mine = state();
  int run = new_run("true", 1);
  vantiro_peach_addSourceFile(run, write("source", "one").c_str());
  vantiro_peach_addParamFile(run, path("absent").c_str());
  EXPECT_EQ(vantiro_peach_execute(run), -8);
  EXPECT_EQ(state(), mine) << "a run that could not start changes nothing";

  ASSERT_EQ(vantiro_peach_execute(new_run("mkdir -p a; touch out a/b", 3, "{out,a/b}")), 0);
  EXPECT_EQ(state().size(), mine.size() + 3 * 5 + 2) << "two directories of jobs are new";
  ASSERT_EQ(vantiro_peach_execute(new_run("touch out", 1)), 0);
  std::set<std::string> wanted = mine;
  wanted.insert({"job-1/out", "job-1/stdout", "job-1/stderr"});
  EXPECT_EQ(state(), wanted);
  EXPECT_EQ(read(path("state/job-1/mine")), "mine");
  run = new_run("touch out", 1);
  EXPECT_EQ(vantiro_stopProject(vantiro_peach_getProjectHandle(run)), 0);
  EXPECT_EQ(vantiro_peach_execute(run), -4);
  EXPECT_EQ(state(), wanted) << "a run that could not start removes nothing";

  run = new_run("true", 1);
  vantiro_peach_addParamFile(run, path("source").c_str());
  EXPECT_EQ(vantiro_peach_execute(run), -4) << "its archive would replace the caller's file";
  EXPECT_EQ(read(path("state/inputs/param.jar")), "mine");
}

TEST_F(State, IsNotWrittenOverFilesOfTheCaller) {
  const auto refused = [&](int status, const char *output, const std::string &named) {
    const int run = new_run("touch out ran; touch " + path("ran"), 2, output);
    EXPECT_EQ(vantiro_peach_execute(run), status);
    EXPECT_TRUE(contains(message(run), path("state/" + named))) << message(run);
    EXPECT_EQ(fs::remove(path("ran")), status == -5) << "it is known before the jobs run";
  };
  write("state/job-2/out", "mine");
  refused(-4, "out", "job-2/out");
  refused(-5, "o*", "job-2/out");
  EXPECT_EQ(read(path("state/job-2/out")), "mine");
  fs::rename(path("state/job-2"), path("elsewhere"));
  fs::create_directory_symlink(path("elsewhere"), path("state/job-2"));
  refused(-4, "absent", "job-2");
  EXPECT_EQ(std::distance(fs::directory_iterator(path("elsewhere")), {}), 1) << "through a link";
}

TEST_F(State, IsForOneRunAtATime) {
  const auto refused = [&] {
    const int run = new_run("true", 1);
    EXPECT_EQ(vantiro_peach_execute(run), -4);
    EXPECT_TRUE(contains(message(run), path("state"))) << message(run);
  };
  const int first = new_run("touch out started-$VANTIRO_JOB; mv started-* " + scratch +
                                "; while ! [ -e " + path("go") + " ]; do sleep 0.02; done",
                            2);
  int status = 1;
  std::thread execution([&] { status = vantiro_peach_execute(first); });
  while (!fs::exists(path("started-1"))) usleep(10000);
  refused();
  write("go", "");
  execution.join();
  EXPECT_EQ(status, 0) << message(first);
  EXPECT_EQ(next_file(first), path("state/job-1/out"));
  ASSERT_EQ(vantiro_peach_execute(new_run("touch out", 2)), 0) << last_error();
  EXPECT_EQ(next_file(first), "<-13>") << "the file there is another run's";
  EXPECT_TRUE(contains(message(first), "later run")) << message(first);
  start_other("peach");
  refused();
}

TEST_F(State, ServesTheResultsOfTheProject) {
  const int run = new_run("echo text >out; chmod 750 out", 2);
  ASSERT_EQ(vantiro_peach_execute(run), 0);
  EXPECT_EQ(fs::status(path("state/job-1/out")).permissions(), fs::perms(0750));
  const int project = vantiro_peach_getProjectHandle(run);
  EXPECT_EQ(vantiro_setDownloadDir(project, path("down").c_str()), 0);
  EXPECT_EQ(vantiro_downloadResult(project), 2) << last_error();
  EXPECT_EQ(vantiro_unzip(project), 6) << last_error();
  EXPECT_EQ(read(path("down/job-2/out")), "text\n");
  EXPECT_EQ(fs::status(path("down/job-2/out")).permissions(), fs::perms(0750));
}
