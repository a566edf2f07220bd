// What the local grid keeps on disk: whose it is, what becomes of it, and who may read it.
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <thread>

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

  // The number of files in a project's results.
  int unpacked(int project) const {
    EXPECT_EQ(vantiro_setDownloadDir(project, path("down").c_str()), 0);
    EXPECT_EQ(vantiro_downloadResult(project), 1) << last_error();
    return vantiro_unzip(project);
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
}

TEST_F(Files, OfSomebodyElseAreNotTheGrids) {
  if (getuid() != 0) GTEST_SKIP() << "only root can give a directory to somebody else";
  ASSERT_EQ(chown(path("home").c_str(), 12345, 12345), 0);
  EXPECT_EQ(vantiro_ready(session), 0);
  EXPECT_TRUE(contains(last_error(), "belongs to 12345")) << last_error();
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
  const int project = ended_project(
      "d=$(printf 'd\\351'); mkdir $d; cd $d; echo x >$(printf 'f\\377'); echo y >f%FF");
  EXPECT_EQ(unpacked(project), 4) << last_error();
  EXPECT_EQ(read(path("down/job-1/d%E9/f%FF")), "y\n");
  EXPECT_EQ(read(path("down/job-1/d%E9/f%FF.1")), "x\n");
}

TEST_F(Files, ThatCannotBeKeptAreNamedAndStayWhereTheyAre) {
  const std::string name(200, 'd');
  testing::internal::CaptureStderr();
  const int project = ended_project(("mkdir no; echo x >no/x; chmod 000 no; echo y >y; chmod 000 "
                                     "y; rm stderr; mkfifo pipe stderr; "
                                     "for i in $(seq 30); do mkdir " +
                                     name + "; cd -P " + name +
                                     " || exit 1; done; mkdir z; echo z >z/z; chmod 000 z")
                                        .c_str());
  const std::string told = testing::internal::GetCapturedStderr();
  const std::string work = path("home/projects/1/work/job-1");
  EXPECT_TRUE(contains(told, "File name too long: " + work)) << told;
  EXPECT_TRUE(contains(told, work + "/stderr")) << told;
  EXPECT_TRUE(fs::exists(work + "/" + name));
  EXPECT_EQ(unpacked(project), 3) << last_error();
  EXPECT_EQ(read(path("down/job-1/no/x")), "x\n");
  EXPECT_EQ(mode(path("down/job-1/y")), 0u) << "kept, although nobody was to read it";
  EXPECT_EQ(vantiro_removeProject(project), 0) << last_error();
  EXPECT_EQ(count(path("home/projects")) + count(path("home/removed")), 0u) << "at any depth";
  EXPECT_FALSE(fs::exists(path("home/left")));
}

TEST_F(Files, AreNotTouchedThroughLinks) {
  write("mine/a/file", "");
  write("mine/\xff", "");
  ended_project(("mkdir d; ln -s " + path("mine") + " d/link; chmod 000 d").c_str());
  ended_project(("cd ..; mv job-1 j; ln -s " + path("mine") + " job-1").c_str());
  EXPECT_EQ(vantiro_cleanup(session, 1), 3) << last_error();
  EXPECT_EQ(count(path("home/projects")) + count(path("home/removed")), 0u);
  EXPECT_TRUE(fs::exists(path("mine/a/file")));
  EXPECT_TRUE(fs::exists(path("mine/\xff"))) << "renamed, as if the job had left it";
}

TEST_F(Files, ThatNobodyCanDeleteAreNamedOnceAndLeft) {
  write("immutable", "");
  if (system(("chattr +i " + path("immutable") + " 2>/dev/null").c_str()) != 0) {
    GTEST_SKIP() << "only root can make files that nobody can delete, and not everywhere";
  }
  EXPECT_EQ(system(("chattr -i " + path("immutable")).c_str()), 0);
  testing::internal::CaptureStderr();
  const int project = ended_project("mkdir -p a/b/c d; touch a/b/f d/f; chattr +i a/b d/f");
  std::string told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(count(path("home/projects/1/work")), 0u);
  ASSERT_EQ(count(path("home/left")), 1u);
  const std::string left = fs::directory_iterator(path("home/left"))->path();
  EXPECT_TRUE(contains(told, left + "/a/b") && contains(told, "and 1 more")) << told;
  testing::internal::CaptureStderr();
  EXPECT_EQ(vantiro_removeProject(project), 0) << last_error();
  EXPECT_EQ(vantiro_cleanup(session, 1), 0) << last_error();
  told = testing::internal::GetCapturedStderr();
  EXPECT_EQ(told, "") << "it is told once";
  EXPECT_EQ(system(("chattr -R -i " + path("home/left")).c_str()), 0);
}

TEST_F(Files, OfTwoProjectsAreNotMixed) {
  const int first = ended_project("echo first >out"), second = ended_project("true");
  EXPECT_EQ(unpacked(first), 3);
  vantiro_setDownloadDir(second, path("down").c_str());
  EXPECT_EQ(vantiro_downloadResult(second), -4);
  EXPECT_TRUE(contains(last_error(), path("down")) && contains(last_error(), "projects/1"))
      << last_error();
  vantiro_setDownloadDir(second, path("zips").c_str());
  vantiro_setUnzipDir(second, path("down").c_str());
  EXPECT_EQ(vantiro_downloadResult(second), 1);
  EXPECT_EQ(vantiro_unzip(second), -4);
  std::vector<std::thread> threads;
  std::vector<int> counts(10);
  for (int &files : counts) threads.emplace_back([&] { files = vantiro_unzip(first); });
  for (auto &thread : threads) thread.join();
  EXPECT_EQ(counts, std::vector<int>(10, 3)) << last_error();
  EXPECT_EQ(read(path("down/job-1/out")), "first\n");
  EXPECT_EQ(vantiro_removeProject(first), 0);
  EXPECT_EQ(vantiro_unzip(second), 2) << last_error();
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
