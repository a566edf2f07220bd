// What the local grid keeps on disk: whose it is, what becomes of it, and who may read it.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include "grid_test.h"

namespace {

class Files : public GridTest {
 protected:
  void SetUp() override {
    umask(0);
    GridTest::SetUp();
    session = vantiro_open();
    ASSERT_GT(session, 0) << last_error();
  }

  // A project whose one job has ended.
  int ended_project(const char *line) {
    const int project = vantiro_createEmptyProject(session, 0, "p");
    EXPECT_EQ(vantiro_createProjectJobs(project, 1, line), 1) << last_error();
    vantiro_markAllJobsCreated(project);
    vantiro_startProject(project);
    EXPECT_EQ(vantiro_waitCompletion(project), 0) << last_error();
    return project;
  }

  static mode_t mode(const std::string &file) {
    struct stat status = {};
    stat(file.c_str(), &status);
    return status.st_mode & 07777;
  }

  static std::size_t count(const std::string &directory) {
    return std::distance(fs::directory_iterator(directory), {});
  }

  int session = 0;
};

}  // namespace

TEST_F(Files, OfALiveProgramAreLeftAloneAndThoseOfADeadOneRemoved) {
  start_other("ended-project");
  const std::string result = path("home/projects/1/results/job-1.zip");
  ASSERT_TRUE(fs::exists(result));
  EXPECT_EQ(vantiro_cleanup(session, 1), 0) << "it is another program's, which lives";
  EXPECT_TRUE(fs::exists(result));
  EXPECT_EQ(count(path("home/owners")), 1u) << "the other program's";
  const int project = vantiro_createEmptyProject(session, 0, "mine");
  EXPECT_EQ(vantiro_setProjectId(project, 1), -4) << "a number is one project's";
  kill_other();
  while (vantiro_setProjectId(project, 1) != 0) usleep(10000);  // its keeper dies a little later
  EXPECT_EQ(vantiro_cleanup(session, 1), 1);
  EXPECT_EQ(count(path("home/projects")), 1u) << "this program's own project";
  EXPECT_EQ(count(path("home/owners")), 1u);
  EXPECT_EQ(count(path("home/removed")), 0u);
}

TEST_F(Files, ThatADyingProgramLeftAreRemoved) {
  fs::create_directories(path("home/projects/77/results"));
  const std::string reused = write("home/projects/78/owner", std::to_string(getpid()));
  write("home/projects/78/work/job-1/file", "");
  write("home/removed/1/file", "");
  write("home/bundles/uploaded/a.jar.1.part", "");
  EXPECT_EQ(vantiro_cleanup(session, 0), 2) << last_error();
  EXPECT_FALSE(fs::exists(path("home/projects/77")));
  EXPECT_TRUE(fs::exists(reused)) << "what had results is only removed when asked for";
  EXPECT_FALSE(fs::exists(path("home/projects/78/work")));
  EXPECT_EQ(count(path("home/bundles/uploaded")) + count(path("home/removed")), 0u);
}

TEST_F(Files, AreTheUsersAlone) {
  const int project = ended_project("echo secret >out; chmod 754 out");
  for (const char *made : {"home", "home/projects", "home/owners", "home/projects/1"}) {
    EXPECT_EQ(mode(path(made)), 0700u) << made;
  }
  EXPECT_EQ(vantiro_setDownloadDir(project, path("down").c_str()), 0);
  EXPECT_EQ(vantiro_downloadResult(project), 1);
  EXPECT_EQ(mode(path("down/job-1.zip")), 0666u) << "the user's own directory, and umask";
  EXPECT_EQ(count(path("down")), 2u) << "and the note whose they are";
  EXPECT_GT(vantiro_unzip(project), 1);
  EXPECT_EQ(mode(path("down/job-1/out")), 0754u) << "as the job made it";
  const std::string all =
      text_of([&](char *b, unsigned int *s) { return vantiro_getResultFile(project, b, s); });
  EXPECT_EQ(vantiro_unzipFile(all.c_str(), path("all").c_str(), nullptr), 3) << last_error();
  EXPECT_EQ(mode(path("all/job-1/out")), 0754u);
  if (getuid() == 0) {
    ASSERT_EQ(chown(path("home").c_str(), 12345, 12345), 0);
    EXPECT_EQ(vantiro_ready(session), 0);
    EXPECT_TRUE(contains(last_error(), "belongs to 12345")) << last_error();
  }
}

TEST_F(Files, ThatCannotBeWrittenMakeTheGridUnready) {
  ended_project("true");
  EXPECT_EQ(vantiro_ready(session), 1);
  const rlimit none = {100, RLIM_INFINITY};
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &none), 0);
  EXPECT_EQ(vantiro_ready(session), 0);
  EXPECT_TRUE(contains(last_error(), "File too large")) << last_error();
  EXPECT_LT(vantiro_open(), 0);
  EXPECT_EQ(vantiro_cleanup(session, 1), 1) << "what may fill a disk can be removed";
}

TEST_F(Files, WithNamesThatAreNoTextAreKeptUnderOthers) {
  const int project =
      ended_project("d=$(printf 'd\\351'); mkdir $d; echo x >$d/$(printf 'f\\377')");
  vantiro_setDownloadDir(project, path("down").c_str());
  EXPECT_EQ(vantiro_downloadResult(project), 1);
  EXPECT_EQ(vantiro_unzip(project), 3) << last_error();
  EXPECT_EQ(read(path("down/job-1/d%E9/f%FF")), "x\n");
}

TEST_F(Files, ThatCleanupRemovedAreNotResults) {
  const int project = ended_project("true");
  vantiro_setDownloadDir(project, path("down").c_str());
  EXPECT_EQ(vantiro_cleanup(session, 1), 1);
  EXPECT_EQ(vantiro_downloadResult(project), -8);
  EXPECT_TRUE(contains(last_error(), "removed")) << last_error();
  EXPECT_EQ(text_of([&](char *b, unsigned int *s) { return vantiro_getResultFile(project, b, s); }),
            "<-13>");
}
