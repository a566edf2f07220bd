// When jobs run, and what sessions, handles and the end of a grid do to them.
#include <unistd.h>

#include <thread>

#include "grid_test.h"

namespace {

class Scheduling : public GridTest {
 protected:
  void SetUp() override {
    GridTest::SetUp();
    initialise();
    session = vantiro_open();
  }

  void initialise() const {
    ASSERT_EQ(vantiro_initWithoutFile(path("home").c_str(), "", "", "", 1, "", "", 0, 0, "", ""),
              0);
  }

  int project(int priority, std::initializer_list<const char *> lines) const {
    const int created = vantiro_createEmptyProject(session, priority, "p");
    for (const char *line : lines) EXPECT_EQ(vantiro_createProjectJobs(created, 1, line), 1);
    vantiro_markAllJobsCreated(created);
    return created;
  }

  // A line that runs until go() and tells that it does.
  std::string waiting_line() const {
    return "touch " + path("runs") + "; while ! [ -e " + path("go") + " ]; do sleep 0.02; done";
  }
  int start_waiting(int priority = 0) const {
    const int started = project(priority, {waiting_line().c_str()});
    EXPECT_EQ(vantiro_startProject(started), 0) << last_error();
    while (!fs::exists(path("runs"))) usleep(10000);
    return started;
  }
  void go() const { write("go", ""); }

  int session = 0;
};

}  // namespace

TEST_F(Scheduling, TakesTheHighestPriorityFirstThenTheFirstToCome) {
  const int first = start_waiting(9);
  const std::string log = path("log");
  const auto note = [&](const char *word) { return "echo " + std::string(word) + " >>" + log; };
  const int low = project(-1, {note("low").c_str()});
  const int early = project(2, {note("a").c_str(), note("b").c_str()});
  const int late = project(2, {note("c").c_str()});
  const int high = project(7, {note("high").c_str()});
  for (const int some : {low, early, late, high}) ASSERT_EQ(vantiro_startProject(some), 0);
  EXPECT_EQ(text_of([&](char *b, unsigned int *s) {
              return vantiro_getProjectStatistic(early, "waiting", b, s);
            }),
            "2");
  go();
  for (const int some : {first, low, early, late, high}) EXPECT_EQ(vantiro_waitCompletion(some), 0);
  EXPECT_EQ(read(log), "high\na\nb\nc\nlow\n");
}

TEST_F(Scheduling, KeepsTheProjectsOfClosedSessionsAndEarlierInitialisations) {
  const int started = start_waiting();
  EXPECT_EQ(vantiro_close(session), 0);
  EXPECT_EQ(vantiro_close(session), -4);
  EXPECT_EQ(vantiro_ready(session), 0);
  EXPECT_EQ(vantiro_createEmptyProject(session, 0, "p"), -4);
  EXPECT_EQ(vantiro_cleanup(session, 0), -4);
  initialise();
  EXPECT_EQ(vantiro_getProjectStatus(started), 1) << last_error();
  go();
  EXPECT_EQ(vantiro_waitCompletion(started), 0);
}

TEST_F(Scheduling, UnloadsWhenItsJobsHaveEnded) {
  const int started = start_waiting();
  const int never_started = project(0, {"true"});
  int status = 1;
  std::thread unloader([&] { status = vantiro_unload(0); });
  int refused;
  while ((refused = vantiro_createEmptyProject(session, 0, "late")) > 0) usleep(1000);
  EXPECT_EQ(refused, -4) << "nobody could reach it again";
  EXPECT_EQ(vantiro_unload(1), -4);
  EXPECT_EQ(vantiro_getProjectStatus(started), 1);
  go();
  unloader.join();
  EXPECT_EQ(status, 0);
  for (const int gone : {session, started, never_started}) {
    EXPECT_EQ(vantiro_getProjectStatus(gone), -13) << gone;
    EXPECT_EQ(vantiro_close(gone), -13) << gone;
  }
  EXPECT_EQ(fs::exists(path("home/projects/1/results/job-1.zip")), true);
  const int next = vantiro_open();
  EXPECT_GT(next, never_started) << "no handle is used twice";
  EXPECT_EQ(vantiro_ready(next), 1);
}

TEST_F(Scheduling, UnloadsAtOnceAndRemovesWhatThereWas) {
  start_waiting();
  for (int i = 0; i < 5; ++i) ASSERT_EQ(vantiro_startProject(project(0, {"sleep 600"})), 0);
  EXPECT_EQ(vantiro_unload2(1, 1), 0);
  EXPECT_EQ(std::distance(fs::directory_iterator(path("home/projects")), {}), 0);
}
