// Where settings come from, and what is said of what is wrong. The environment is read once in a
// process, so each test sets its own before the Java machine starts.
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>

#include "grid_test.h"

namespace {

class Settings : public GridTest {
 protected:
  void SetUp() override {
    ASSERT_NE(mkdtemp(scratch.data()), nullptr);
    ASSERT_EQ(chdir(scratch.c_str()), 0);
    write("named", "user.login=named\ntemp.dir=" + scratch + "\ngrid.home=" + path("home"));
  }
  void TearDown() override {
    GridTest::TearDown();
    EXPECT_EQ(chdir("/"), 0);
  }
};

class Failures : public GridTest {
 protected:
  int project() {
    const int handle = vantiro_createEmptyProject(vantiro_open(), 0, "p");
    EXPECT_GT(handle, 0) << last_error();
    return handle;
  }
};

}  // namespace

TEST_F(Settings, OfTheEnvironmentServeEveryProgram) {
  setenv("VANTIRO_SETTINGS", "named", 1);
  write("vantiro.properties", "user.login=default");
  EXPECT_EQ(vantiro_init(), 0) << last_error();
  EXPECT_EQ(text_of(vantiro_getUserLogin), "named");
  EXPECT_EQ(vantiro_initWithoutFile(nullptr, "me", nullptr, nullptr, 0, nullptr, nullptr, 0, 0,
                                    nullptr, nullptr),
            0);
  EXPECT_EQ(text_of(vantiro_getUserLogin) + text_of(vantiro_getTempDir), "me" + scratch);
  EXPECT_EQ(vantiro_initWithoutFile(nullptr, nullptr, nullptr, nullptr, 0, nullptr, nullptr, 0, 0,
                                    nullptr, "vantiro.properties"),
            0);
  EXPECT_EQ(text_of(vantiro_getUserLogin), "default") << "the further file goes before";
  EXPECT_EQ(vantiro_initFile("vantiro.properties"), 0) << last_error();
  EXPECT_EQ(text_of(vantiro_getUserLogin), "default");
}

TEST_F(Settings, OfTheEnvironmentMustBeReadable) {
  setenv("VANTIRO_SETTINGS", path("absent").c_str(), 1);
  EXPECT_EQ(vantiro_init(), -2);
  for (const std::string &part : {path("absent"), std::string("VANTIRO_SETTINGS")}) {
    EXPECT_TRUE(contains(last_error(), part)) << last_error();
  }
}

TEST_F(Settings, ThatAreThereMustBeReadable) {
  unsetenv("VANTIRO_SETTINGS");
  setenv("_JAVA_OPTIONS", ("-Duser.home=" + scratch).c_str(), 1);
  EXPECT_EQ(vantiro_init(), 0) << last_error();
  fs::create_symlink("absent", "vantiro.properties");
  EXPECT_EQ(vantiro_init(), -2);
  EXPECT_TRUE(contains(last_error(), "vantiro.properties")) << last_error();
}

TEST_F(Settings, OfAUserWithoutANameComeFromTheEnvironment) {
  unsetenv("VANTIRO_SETTINGS");
  setenv("_JAVA_OPTIONS", "-Duser.home=? -Duser.name=?", 1);
  setenv("HOME", path("user").c_str(), 1);
  setenv("USER", "somebody", 1);
  EXPECT_EQ(vantiro_init(), 0) << last_error();
  EXPECT_EQ(text_of(vantiro_getUserLogin), "somebody");
  EXPECT_GT(vantiro_open(), 0) << last_error();
  EXPECT_TRUE(fs::exists(path("user/.vantiro-grid/projects")));
}

TEST_F(Settings, OfItsCallerDoNotServeASetUserIdProgram) {
  if (geteuid() != 0) GTEST_SKIP() << "only root can become such a program";
  setenv("VANTIRO_SETTINGS", "named", 1);
  write("vantiro.properties", "user.login=default");
  ASSERT_EQ(setresuid(65534, 0, 0), 0);
  EXPECT_EQ(vantiro_init(), 0) << last_error();
  EXPECT_EQ(text_of(vantiro_getUserLogin), "nobody");
  ASSERT_EQ(vantiro_initFile("named"), 0) << last_error();
  const int project = vantiro_createEmptyProject(vantiro_open(), 0, "p");
  vantiro_markAllJobsCreated(project);
  EXPECT_EQ(vantiro_startProject(project), -4);
  EXPECT_TRUE(contains(last_error(), "set-user-id")) << last_error();
  ASSERT_EQ(setresuid(0, 0, 0), 0);
  EXPECT_EQ(vantiro_startProject(project), 0) << last_error();
}

TEST_F(Settings, AskForAHomeThatNobodyHas) {
  unsetenv("VANTIRO_SETTINGS");
  setenv("_JAVA_OPTIONS", "-Duser.home=?", 1);
  setenv("HOME", "relative", 1);
  EXPECT_EQ(vantiro_init(), -2);
  EXPECT_TRUE(contains(last_error(), "grid.home")) << last_error();
  EXPECT_EQ(vantiro_initFile("named"), 0) << last_error();
  EXPECT_FALSE(fs::exists("?") || fs::exists("relative"));
}

TEST_F(Settings, TellOfTextThatTheLocaleCannotHold) {
  setenv("LC_ALL", "C", 1);
  ASSERT_EQ(vantiro_initFile("named"), 0) << last_error();
  const int project = vantiro_createEmptyProject(vantiro_open(), 0, "p");
  EXPECT_EQ(vantiro_setDownloadDir(project, "/tmp/\u00fc"), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_TRUE(contains(last_error(), "LC_ALL=C)") && contains(last_error(), "C.UTF-8"))
      << last_error();
  EXPECT_EQ(vantiro_createProjectJobs(project, 1, "rm -f \u00fc"), -13);
  EXPECT_EQ(vantiro_createProjectJobs(project, 1, "touch $(printf '\\303\\274')"), 1);
  vantiro_markAllJobsCreated(project);
  vantiro_startProject(project);
  EXPECT_EQ(vantiro_waitCompletion(project), 0) << last_error();
  vantiro_setDownloadDir(project, path("down").c_str());
  vantiro_downloadResult(project);
  EXPECT_EQ(vantiro_unzip(project), 3) << last_error();
  EXPECT_TRUE(fs::exists(path("down/job-1/%C3%BC")));
}

TEST_F(Failures, HaveTheirTextsAlsoWhenTheyAreExceptions) {
  const int some = project();
  EXPECT_EQ(vantiro_setProjectId(some, -1), -10);
  EXPECT_EQ(vantiro_getProjectStatus(987654), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_TRUE(contains(last_error(), "987654")) << last_error();
  EXPECT_EQ(vantiro_getLastError(0), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);

  const int run = vantiro_peach_handle();
  const auto told = [&](int status) {
    EXPECT_EQ(status, VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
    const std::string text = text_of(
        [&](char *b, unsigned int *s) { return vantiro_peach_getLastErrorMessage(run, b, s); });
    EXPECT_EQ(text, last_error());
    EXPECT_FALSE(contains(text, "java.")) << text;
    return text;
  };
  EXPECT_TRUE(contains(told(vantiro_peach_setPriority(run, "urgent")), "urgent"));
  for (const char *name : {".", "a/..", "./", "", "a/", "../a", "/a"}) {
    EXPECT_TRUE(contains(told(vantiro_peach_setJobFileNames(run, 1, name)), "below")) << name;
  }
  const std::string large = "start" + std::string(10 << 20, 'x') + "end";
  const std::string text = told(vantiro_peach_setPriority(run, large.c_str()));
  EXPECT_TRUE(contains(text, "startxx") && contains(text, "xxend"));
  EXPECT_LT(text.size(), 400u);
  EXPECT_EQ(vantiro_peach_setDescription(run, nullptr), 0);
  EXPECT_EQ(vantiro_peach_addExeFile(run, "/file", nullptr, nullptr, nullptr), 0);
}

TEST_F(Failures, OfFilesAreToldWithoutTheNamesOfJavaClasses) {
  const int some = project();
  vantiro_createProjectJobs(some, 1, "true");
  vantiro_markAllJobsCreated(some);
  vantiro_startProject(some);
  ASSERT_EQ(vantiro_waitCompletion(some), 0);
  fs::create_symlink("circle", path("circle"));
  const std::string file = write("file", "");
  for (const auto &[directory, reason] :
       {std::pair(file + "/below", "Not a directory"), std::pair(file, "already"),
        std::pair(path("circle/x"), "circle"), std::pair(std::string("/proc/x"), "/proc/x")}) {
    vantiro_setDownloadDir(some, directory.c_str());
    EXPECT_LT(vantiro_downloadResult(some), 0);
    EXPECT_FALSE(contains(last_error(), "java.")) << last_error();
    EXPECT_TRUE(contains(last_error(), reason)) << last_error();
  }
}

TEST_F(Failures, KeepOneNumberForAProject) {
  const int some = project(), second = project();
  const auto number = [](int handle) { return vantiro_getProjectId(handle); };
  EXPECT_NE(number(some), number(second));
  EXPECT_EQ(vantiro_setProjectId(some, number(second)), -4);
  EXPECT_EQ(vantiro_setProjectId(some, number(second) + 1), 0) << last_error();
  EXPECT_NE(number(project()), number(some));
  EXPECT_EQ(vantiro_setProjectId(second, 4711), 0) << last_error();
  const int run = vantiro_peach_handle();
  EXPECT_EQ(vantiro_peach_setProjectId(run, 4711), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_EQ(vantiro_peach_setProjectId(run, 4712), 0) << last_error();
  EXPECT_EQ(vantiro_getProjectId(vantiro_peach_getProjectHandle(run)), 4712);
  EXPECT_TRUE(fs::exists(path("home/projects/4712/owner")));
}
