// Projects of jobs, from their creation to their unpacked results.
#include <thread>

#include "grid_test.h"

namespace {

class Project : public GridTest {
 protected:
  void SetUp() override {
    GridTest::SetUp();
    session = vantiro_open();
    project = vantiro_createProject(session, 3, "words", 2, "language=en", "depth=2");
    ASSERT_GT(project, 0) << last_error();
    ASSERT_NE(project, session) << "handles of one kind must not be taken for another";
  }

  std::string statistic(const char *name) const {
    return text_of(
        [&](char *b, unsigned int *s) { return vantiro_getProjectStatistic(project, name, b, s); });
  }

  int run_to_end() const {
    vantiro_markAllJobsCreated(project);
    vantiro_startProject(project);
    return vantiro_waitCompletion(project);
  }

  int session = 0;
  int project = 0;
};

}  // namespace

TEST_F(Project, RunsJobsOfEveryKindAndUnpacksTheirResults) {
  const char *arguments[] = {"sh", "-c", "echo \"$1 $VANTIRO_PARAM_depth\" >out", "sh", "a  b"};
  EXPECT_EQ(vantiro_createJob2(project, 5, arguments), 1);
  EXPECT_EQ(vantiro_createProjectJobs(project, 2, "read line; echo $line", "exit 0"), 2);
  EXPECT_EQ(vantiro_createCachedJob(project, 1, "true"), 1);
  EXPECT_EQ(vantiro_createCachedJob(project, 2, "echo", "cached"), 2);
  EXPECT_EQ(vantiro_markAllJobsCreated(project), -4) << "cached jobs would be lost";
  EXPECT_EQ(vantiro_flushCachedJobs(project), 2);
  EXPECT_EQ(vantiro_setProjectParams(project, 1, "depth=9"), 0);
  EXPECT_EQ(vantiro_sendJobPostParameter(project, 2, "posted"), 0);
  EXPECT_EQ(vantiro_waitCompletion(project), -4) << "it must not wait for ever";
  EXPECT_EQ(vantiro_getProjectStatus(project), 0);
  ASSERT_EQ(run_to_end(), 0) << last_error();

  EXPECT_EQ(vantiro_getProjectStatus(project), 2);
  EXPECT_EQ(vantiro_isCompleted(project), 1);
  EXPECT_EQ(vantiro_isFailed(project), 0);
  EXPECT_EQ(vantiro_isJobCompleted(project, 5), 1);
  EXPECT_EQ(statistic("completed"), "5");
  EXPECT_EQ(statistic("nonsense"), "<null>");
  EXPECT_EQ(vantiro_setDownloadDir(project, path("down").c_str()), 0);
  EXPECT_EQ(vantiro_setUnzipDir(project, path("out").c_str()), 0);
  EXPECT_EQ(vantiro_downloadResult(project), 5);
  EXPECT_GT(vantiro_unzip(project), 5);
  EXPECT_EQ(read(path("out/job-1/out")), "a  b 9\n");
  EXPECT_EQ(read(path("out/job-2/stdout")), "posted\n");
  EXPECT_EQ(read(path("out/job-5/stdout")), "cached\n");
  const std::string all =
      text_of([&](char *b, unsigned int *s) { return vantiro_getResultFile(project, b, s); });
  EXPECT_EQ(vantiro_unzipFile(all.c_str(), path("one").c_str(), "job-5/stdout"), 1);
  EXPECT_EQ(read(path("one/job-5/stdout")), "cached\n");
  EXPECT_EQ(vantiro_removeProject(project), 0);
  EXPECT_EQ(vantiro_getProjectStatus(project), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
}

TEST_F(Project, ListsParametersAndDescribesItself) {
  std::string names;
  int count = 1;
  for (int i = 0; i < count; ++i) {
    count = i;
    names += text_of([&](char *b, unsigned int *s) {
               return vantiro_getProjectParamName(project, &count, b, s);
             }) +
             " ";
  }
  EXPECT_EQ(names, "language depth ");
  EXPECT_EQ(vantiro_getProjectParamCount(project), 2);
  const auto value = [&](const char *name) {
    return text_of([&](char *b, unsigned int *s) {
      return vantiro_getProjectParamValue(project, name, b, s);
    });
  };
  EXPECT_EQ(value("language"), "en");
  EXPECT_EQ(value("absent"), "<null>");
  EXPECT_EQ(vantiro_setProjectParams(project, 2, "a-b=1", "a.b=2"), -13) << "one variable";
  EXPECT_TRUE(contains(last_error(), "a-b") && contains(last_error(), "a.b")) << last_error();
  EXPECT_EQ(vantiro_setProjectId(project, 99), 0);
  EXPECT_EQ(vantiro_getProjectId(project), 99);
  const std::string description = text_of(
      [&](char *b, unsigned int *s) { return vantiro_getProjectDescription(project, b, s); });
  EXPECT_TRUE(contains(description, "words") && contains(description, "99")) << description;
  EXPECT_GE(vantiro_addUserClientsToProject(project), 1);
  const int empty = vantiro_createEmptyProject(session, 1, "empty");
  EXPECT_EQ(vantiro_getProjectParamCount(empty), 0);
  const std::string statistics =
      text_of([&](char *b, unsigned int *s) { return vantiro_getStatisticsString(session, b, s); });
  EXPECT_TRUE(contains(statistics, "words") && contains(statistics, "empty")) << statistics;
}

TEST_F(Project, TellsWhichJobFailedAndWhy) {
  vantiro_createProjectJobs(project, 3, "echo fine", "echo 'no such luck' >&2; exit 7", "true");
  EXPECT_EQ(run_to_end(), -5);
  EXPECT_EQ(vantiro_isFailed(project), 1);
  EXPECT_EQ(vantiro_getProjectStatus(project), 3);
  EXPECT_EQ(statistic("completed") + statistic("failed"), "21");
  EXPECT_EQ(vantiro_getLastError(0), -5);
  for (const char *part : {"job 2", "exit status 7", "no such luck"}) {
    EXPECT_TRUE(contains(last_error(), part)) << last_error();
  }
  EXPECT_EQ(vantiro_sendJobPostParameter(project, 1, "late"), -4);
  EXPECT_EQ(vantiro_getLastError(1), -4);
  EXPECT_EQ(vantiro_getLastError(0), 0);
  EXPECT_EQ(last_error(), "");
}

TEST_F(Project, StopsWhatRunsAndDropsWhatWaits) {
  for (int i = 0; i < 20; ++i) {
    vantiro_createProjectJobs(project, 1,
                              ("echo $$ >" + path("pid") + "; sleep 60 & wait").c_str());
  }
  vantiro_markAllJobsCreated(project);
  vantiro_startProject(project);
  while (read(path("pid")).empty()) vantiro_actionWait(20);
  EXPECT_EQ(vantiro_getProjectStatus(project), 1);
  EXPECT_EQ(vantiro_stopProject(project), 0);
  EXPECT_EQ(vantiro_getProjectStatus(project), 4);
  EXPECT_EQ(vantiro_waitCompletion(project), -9);
  EXPECT_LT(vantiro_getUsedTime(project), 30000);
  EXPECT_EQ(read("/proc/" + std::to_string(std::stoi(read(path("pid")))) + "/cmdline"), "")
      << "a job outlives its project";
}

TEST_F(Project, HandsOverResultsWhileItRuns) {
  const std::string wait = "while ! [ -e " + path("go") + " ]; do sleep 0.05; done";
  vantiro_createProjectJobs(project, 2, "echo early", wait.c_str());
  vantiro_setDownloadDir(project, path("down").c_str());
  EXPECT_EQ(vantiro_setStreamResults(project, 1), 0);
  vantiro_markAllJobsCreated(project);
  vantiro_startProject(project);
  EXPECT_EQ(vantiro_waitCompletionBG(project), 0);
  while (vantiro_getStreamedResultFilesCount(project) == 0) vantiro_actionWait(20);
  int index = 0;
  EXPECT_EQ(text_of([&](char *b, unsigned int *s) {
              return vantiro_getStreamedResultFiles(project, &index, b, s);
            }),
            "job-1.zip");
  EXPECT_EQ(index, 1);
  EXPECT_TRUE(fs::exists(path("down/job-1.zip")));
  EXPECT_LT(vantiro_downloadResult(project), 0) << "it has not completed";
  EXPECT_EQ(vantiro_downloadPartialResult(project), 1);
  EXPECT_EQ(vantiro_isCompleted(project), 0);
  write("go", "");
  EXPECT_EQ(vantiro_waitCompletion(project), 0);
  while (!fs::exists(path("down/job-2.zip"))) vantiro_actionWait(20);
  EXPECT_EQ(vantiro_downloadResult(project), 2);
}

TEST_F(Project, KeepsResultsThatItCannotHandOver) {
  vantiro_createProjectJobs(project, 2, "true", "true");
  vantiro_setDownloadDir(project, write("file", "").c_str());
  EXPECT_EQ(vantiro_setStreamResults(project, 1), 0);
  EXPECT_EQ(run_to_end(), 0) << last_error();
  EXPECT_EQ(vantiro_getStreamedResultFilesCount(project), 0);
  vantiro_setDownloadDir(project, path("down").c_str());
  EXPECT_EQ(vantiro_unzip(project), -4) << "nothing was downloaded";
  EXPECT_EQ(vantiro_downloadResult(project), 2) << last_error();
  const int empty = vantiro_createEmptyProject(session, 0, "empty");
  vantiro_markAllJobsCreated(empty);
  vantiro_startProject(empty);
  vantiro_setDownloadDir(empty, path("none").c_str());
  EXPECT_EQ(vantiro_downloadResult(empty), 0);
  EXPECT_EQ(vantiro_unzip(empty), 0) << last_error();
}

TEST_F(Project, CountsTheProcessorTimeOfItsJobs) {
  vantiro_createProjectJobs(project, 1, "i=0; while [ $i -lt 100000 ]; do i=$((i+1)); done");
  ASSERT_EQ(run_to_end(), 0);
  EXPECT_GT(vantiro_getUsedCpuTime(project), 0);
  EXPECT_LE(vantiro_getUsedCpuTime(project), vantiro_getUsedTime(project) + 20);
}
