// What the settings of a parallel-each run do to it.
#include <cstdlib>
#include <cstring>
#include <thread>
#include <vector>

#include "grid_test.h"

namespace {

std::string next_file(int run) {
  return text_of([&](char *b, unsigned int *s) { return vantiro_peach_nextFile(run, b, s); });
}

std::string message(int run) {
  return text_of(
      [&](char *b, unsigned int *s) { return vantiro_peach_getLastErrorMessage(run, b, s); });
}

class PeachRun : public GridTest {
 protected:
  int new_run(const std::string &executable, int jobs) {
    const int run = vantiro_peach_handle();
    EXPECT_GT(run, 0);
    EXPECT_EQ(vantiro_peach_setExecutable(run, executable.c_str()), 0);
    EXPECT_EQ(vantiro_peach_setJobs(run, jobs), 0);
    EXPECT_EQ(vantiro_peach_setStateDir(run, path("state").c_str()), 0);
    return run;
  }
};

}  // namespace

TEST_F(PeachRun, GivesEachJobItsFilesItsEnvironmentAndItsParameters) {
  const std::string show = write("show.sh",
                                 "#!/bin/sh\nenv | grep ^VANTIRO_ | sort >seen\n"
                                 "for f in $(find . ! -type d ! -name seen | sort); do\n"
                                 "  echo \"$f $([ -L $f ] && echo link) $(cat $f | head -n 1)\" "
                                 ">>seen\ndone\n");
  const int run = new_run("./show a", 2);
  vantiro_peach_setName(run, "everything");
  vantiro_peach_setDescription(run, "all settings");
  vantiro_peach_setPriority(run, "high");
  vantiro_peach_setProjectId(run, 4711);
  vantiro_peach_addExeFile(run, show.c_str(), "show", nullptr, "755");
  vantiro_peach_addExeFile(run, show.c_str(), "elsewhere", "windows", nullptr);
  vantiro_peach_putExeExtras(run, "compiler", "gcc");
  vantiro_peach_addOutputFile(run, "se?n");
  vantiro_peach_newDataBundleWithName(run, "named");
  vantiro_peach_addDataFileWithDir(run, write("data1", "data one").c_str(), "sub");
  vantiro_peach_newDataBundle(run);
  vantiro_peach_setDataCopy(run, 0);
  vantiro_peach_addDataFile(run, write("data2", "data two").c_str());
  vantiro_peach_putDataExtras(run, "kind", "raw");
  vantiro_peach_setJobFileNames(run, 1, "input");
  vantiro_peach_addJobFile(run, 1, write("a", "first").c_str());
  vantiro_peach_addJobFileWithDir(run, "deep", 1, write("b", "second").c_str());
  vantiro_peach_putJobExtras(run, "colour", "red");
  vantiro_peach_setParamCopy(run, 0);
  vantiro_peach_addParamFile(run, write("p1", "param one").c_str());
  vantiro_peach_addParamFileWithDir(run, write("p2", "param two").c_str(), "params");
  vantiro_peach_addParamFileWithTarget(run, write("p3", "param three").c_str(), "other-name");
  vantiro_peach_putParamExtras(run, "unit", "mm");
  vantiro_peach_addParamExternalResource(run, write("shared", "external").c_str());
  vantiro_peach_putProjectParam(run, "depth", "12");
  vantiro_peach_putSourceExtras(run, "branch", "main");
  vantiro_peach_setResultFile(run, path("results.zip").c_str());

  ASSERT_EQ(vantiro_peach_execute(run), 0) << message(run);
  EXPECT_EQ(vantiro_peach_getProjectId(run), 4711);
  const std::string job1 = next_file(run);
  EXPECT_EQ(job1, path("state/job-1/seen"));
  EXPECT_EQ(next_file(run), path("state/job-2/seen"));
  EXPECT_EQ(next_file(run), "<null>");
  const std::string seen = read(job1);
  for (const char *line :
       {"VANTIRO_JOB=1\n", "VANTIRO_JOBS=2\n", "VANTIRO_PROJECT=4711\n", "VANTIRO_PRIORITY=10\n",
        "VANTIRO_PARAM_depth=12\n", "VANTIRO_EXTRA_EXE_compiler=gcc\n",
        "VANTIRO_EXTRA_DATA_kind=raw\n", "VANTIRO_EXTRA_JOB_colour=red\n",
        "VANTIRO_EXTRA_PARAM_unit=mm\n", "VANTIRO_EXTRA_SOURCE_branch=main\n",
        "./named/sub/data1  data one\n", "./data2 link data two\n", "./input  first\n",
        "./p1 link param one\n", "./params/p2 link param two\n", "./other-name link param three\n",
        "./shared link external\n"}) {
    EXPECT_TRUE(contains(seen, line)) << line << "is not in\n" << seen;
  }
  EXPECT_FALSE(contains(seen, "elsewhere"));
  EXPECT_TRUE(contains(read(path("state/job-2/seen")), "./deep/input  second\n"));
  EXPECT_EQ(vantiro_unzipFile(path("results.zip").c_str(), path("out").c_str(), ""), 6);
  EXPECT_EQ(read(path("out/job-1/seen")), seen);
  const std::string description = text_of([&](char *b, unsigned int *s) {
    return vantiro_getProjectDescription(vantiro_peach_getProjectHandle(run), b, s);
  });
  EXPECT_TRUE(contains(description, "everything: all settings")) << description;
  EXPECT_EQ(vantiro_peach_done(run), 0);
}

TEST_F(PeachRun, ReportsAFailedJobAndHandsOutTheOthersOnlyWhenAllowed) {
  const char *command = "echo trouble $VANTIRO_PRIORITY >&2; touch made; [ $VANTIRO_JOB != 2 ]";
  for (const unsigned char allowed : {0, 1}) {
    const int run = new_run(command, 3);
    vantiro_peach_addOutputFile(run, "made");
    vantiro_peach_setPriorityI(run, 7);
    vantiro_peach_setAllowPartial(run, allowed);
    EXPECT_EQ(vantiro_peach_execute(run), allowed ? 0 : -5);
    EXPECT_TRUE(contains(message(run), "job 2 of ")) << message(run);
    EXPECT_TRUE(contains(message(run), "trouble 7")) << message(run);
    EXPECT_EQ(next_file(run), allowed ? path("state/job-1/made") : "<null>");
    EXPECT_EQ(vantiro_peach_execute(run), -4) << "a run is executed once";
    EXPECT_EQ(vantiro_peach_done(run), 0);
    EXPECT_EQ(vantiro_peach_done(run), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  }
}

TEST_F(PeachRun, KnowsWhetherItsSourcesAndInputsChanged) {
  const std::string source = write("source", "one");
  using Skip = int (*)(int, unsigned char);
  const std::pair<Skip, std::string> inputs[] = {{vantiro_peach_setExeSkipDigest, "exe-tool.jar"},
                                                 {vantiro_peach_setDataSkipDigest, "data-1.jar"},
                                                 {vantiro_peach_setJobSkipDigest, "job.jar"},
                                                 {vantiro_peach_setParamSkipDigest, "param.jar"}};
  // Whether the sources changed, and when the archive of each kind of input was written.
  const auto execute = [&](Skip skip) {
    const int run = new_run("true", 1);
    vantiro_peach_addSourceFile(run, source.c_str());
    vantiro_peach_setExeBundleName(run, "tool");
    vantiro_peach_addExeFile(run, source.c_str(), "exe", "", "");
    vantiro_peach_addDataFileWithDir(run, source.c_str(), "data");
    vantiro_peach_addJobFileWithDir(run, "job", 1, source.c_str());
    vantiro_peach_addParamFileWithTarget(run, source.c_str(), "param");
    if (skip) skip(run, 1);
    const int changed = vantiro_peach_sourcesChanged(run);
    EXPECT_EQ(vantiro_peach_execute(run), 0) << message(run);
    vantiro_peach_done(run);
    std::vector<fs::file_time_type> times;
    for (const auto &input : inputs) {
      times.push_back(fs::last_write_time(path("state/inputs/" + input.second)));
    }
    return std::pair(changed, times);
  };
  const auto first = execute(nullptr);
  EXPECT_EQ(first.first, 1);
  EXPECT_EQ(execute(nullptr), std::pair(0, first.second)) << "nothing changed, nothing is written";
  for (std::size_t i = 0; i < std::size(inputs); ++i) {
    const auto before = execute(nullptr).second;
    const auto times = execute(inputs[i].first).second;
    for (std::size_t j = 0; j < times.size(); ++j) {
      EXPECT_EQ(times[j] == before[j], i != j) << inputs[i].second << ", " << inputs[j].second;
    }
  }
  write("source", "two");
  EXPECT_EQ(execute(nullptr).first, 1);
}

TEST_F(PeachRun, RefusesInputsThatWouldReplaceEachOther) {
  const std::string a = write("a/name", "a"), b = write("b/name", "b");
  fs::permissions(a, fs::perms(0751));
  const auto refused = [&](auto add) {
    const int run = new_run("cat name; stat -c %a name; rm -f " + a, 2);
    const int status = add(run);
    EXPECT_EQ(status == 0 ? vantiro_peach_execute(run) : status, -13);
    const std::string text = message(run);
    EXPECT_TRUE(contains(text, a) && (contains(text, b) || contains(text, "stdout"))) << text;
    vantiro_peach_done(run);
  };
  refused([&](int run) {
    vantiro_peach_addDataFile(run, a.c_str());
    return vantiro_peach_addDataFile(run, b.c_str());
  });
  refused([&](int run) {
    vantiro_peach_addParamFile(run, a.c_str());
    return vantiro_peach_addExeFile(run, b.c_str(), "name/below", "", "");
  });
  refused([&](int run) { return vantiro_peach_addJobFile(run, 2, a.c_str(), b.c_str()); });
  refused([&](int run) {
    vantiro_peach_addJobFile(run, 1, a.c_str());
    return vantiro_peach_addParamExternalResource(run, b.c_str());
  });
  refused([&](int run) { return vantiro_peach_addParamFileWithTarget(run, a.c_str(), "stdout"); });

  const int run = new_run("cat name; stat -c %a name; rm -f " + a, 2);
  for (int i = 0; i < 2; ++i) vantiro_peach_addDataFile(run, a.c_str());
  vantiro_peach_setJobFileNames(run, 1, "other-name");
  vantiro_peach_addJobFile(run, 1, b.c_str());
  vantiro_peach_addExeFile(run, a.c_str(), "tool", "linux", "");
  vantiro_peach_addExeFile(run, b.c_str(), "tool", "any", "");
  vantiro_initWithoutFile(path("home").c_str(), "", "", "", 1, "", "", 0, 0, "", "");
  EXPECT_EQ(vantiro_peach_execute(run), 0) << message(run);
  EXPECT_EQ(read(path("state/job-2/stdout")), "a751\n") << "the first job removed the file";
}

TEST_F(PeachRun, KeepsItsOutputsUntilTheirFileIsWritten) {
  int run = new_run("touch " + path("ran"), 1);
  vantiro_peach_setResultFile(run, (write("file", "") + "/r.zip").c_str());
  EXPECT_EQ(vantiro_peach_execute(run), -1);
  EXPECT_TRUE(contains(message(run), path("file"))) << message(run);
  EXPECT_FALSE(fs::exists(path("ran"))) << "it is known before the jobs run";
  run = vantiro_peach_handle();
  vantiro_peach_setExecutable(run, ("echo x; mkdir " + path("r.zip")).c_str());
  vantiro_peach_setResultFile(run, path("r.zip").c_str());
  vantiro_peach_setRemove(run, 1);
  EXPECT_EQ(vantiro_peach_execute(run), -1);
  EXPECT_TRUE(contains(message(run), path("r.zip")) && !contains(message(run), ".part"))
      << message(run);
  const std::string id = std::to_string(vantiro_peach_getProjectId(run));
  EXPECT_EQ(vantiro_peach_done(run), 0);
  EXPECT_EQ(read(path("home/projects/" + id + "/state/job-1/stdout")), "x\n");
}

TEST_F(PeachRun, StreamsFilesAndCleansUpBehindItself) {
  testing::internal::CaptureStderr();
  const int run = new_run("echo $VANTIRO_JOB >out; [ $VANTIRO_JOB = 1 ] || while ! [ -e " +
                              path("go") + " ]; do sleep 0.05; done",
                          2);
  for (const auto set : {vantiro_peach_setStream, vantiro_peach_setCleanup, vantiro_peach_setRemove,
                         vantiro_peach_setClose, vantiro_peach_setMessages}) {
    EXPECT_EQ(set(run, 1), 0);
  }
  vantiro_peach_addOutputFile(run, "out");
  int status = 1;
  std::thread execution([&] { status = vantiro_peach_execute(run); });
  std::string file;
  while ((file = next_file(run)) == "<null>") std::this_thread::yield();
  EXPECT_EQ(file, path("state/job-1/out")) << "it comes while the other job still runs";
  write("go", "");
  execution.join();
  EXPECT_EQ(status, 0);
  EXPECT_EQ(vantiro_peach_postProcessed(run, 1), 0);
  EXPECT_EQ(next_file(run), path("state/job-2/out"));
  EXPECT_EQ(next_file(run), "<null>");
  EXPECT_EQ(next_file(run), "<-13>") << "the run has closed itself";
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(contains(told, "2 of 2 ended")) << told;
  EXPECT_FALSE(fs::exists(path("state/job-1/out")));
  EXPECT_TRUE(fs::exists(path("state/job-2/out")));
  EXPECT_TRUE(fs::is_empty(path("home/projects")));
}

namespace {
std::string results[4];  // one job's lines each, which come one after the other
}

TEST_F(PeachRun, DeliversEveryLineInTheOrderOfItsJobWhileItRuns) {
  const int run = new_run("for i in $(seq 500); do echo $i; done; printf end", 3);
  vantiro_peach_addParamFile(run, write("input", "not an output").c_str());
  ASSERT_EQ(vantiro_peach_setIntermediateResultHandler(run,
                                                       [](const char *text) {
                                                         const int job = std::atoi(text);
                                                         if (job >= 1 && job <= 3)
                                                           results[job] +=
                                                               std::strchr(text, ':') + 1;
                                                       }),
            0);
  ASSERT_EQ(vantiro_peach_execute(run), 0);
  std::string expected;
  for (int i = 1; i <= 500; ++i) expected += std::to_string(i);
  expected += "end";
  for (int job = 1; job <= 3; ++job) EXPECT_EQ(results[job], expected);
  EXPECT_FALSE(fs::exists(path("state/job-1/input")));
}

TEST_F(PeachRun, DeliversLongLinesInPiecesThatJoinToTheLine) {
  static std::vector<std::string> pieces;
  // The first line is as long as a piece, the second cannot be cut at just any byte.
  const int run = new_run(
      "head -c 65536 /dev/zero | tr '\\0' x; echo; "
      "echo a$(yes \xe2\x82\xac | head -n 60000 | tr -d '\\n')",
      1);
  vantiro_peach_setIntermediateResultHandler(run, [](const char *text) { pieces.push_back(text); });
  ASSERT_EQ(vantiro_peach_execute(run), 0) << last_error();
  std::vector<std::string> lines(1);
  for (const std::string &piece : pieces) {
    lines.back() += piece.substr(2);
    if (piece[1] == ':') lines.emplace_back();
  }
  std::string euros = "a";
  for (int i = 0; i < 60000; ++i) euros += "\xe2\x82\xac";
  EXPECT_EQ(pieces.size(), 4U);
  EXPECT_TRUE(lines == (std::vector<std::string>{std::string(65536, 'x'), euros, ""}));
}

TEST_F(PeachRun, FollowsWhatTheJobWasGivenAndNotWhatItPutsThere) {
  for (const char *thing : {"mkfifo stdout", "ln -s /dev/zero stdout", "mkdir stdout"}) {
    const int run =
        new_run((std::string("echo line; rm stdout; ") + thing + "; sleep 0.1").c_str(), 2);
    static int lines;
    lines = 0;
    vantiro_peach_setIntermediateResultHandler(run, [](const char *) { ++lines; });
    vantiro_peach_setAllowPartial(run, 1);
    EXPECT_EQ(vantiro_peach_execute(run), 0) << last_error();
    EXPECT_EQ(lines, 2) << thing;
    EXPECT_EQ(vantiro_peach_done(run), 0);
  }
}

TEST_F(PeachRun, CallsItsReceiverOnTheThreadThatExecutesIt) {
  static int run, project, inner, ended, removed;
  static std::vector<std::thread::id> threads;
  run = new_run("echo ready; sleep 600", 1);
  project = vantiro_peach_getProjectHandle(run);
  vantiro_peach_setIntermediateResultHandler(run, [](const char *) {
    threads.push_back(std::this_thread::get_id());
    // Another run, and all that ends this one, but for what waits for the caller itself.
    inner = vantiro_peach(1, "executable=true");
    ended = vantiro_peach_done(run);
    removed = vantiro_removeProject(project);
  });
  testing::internal::CaptureStderr();
  EXPECT_EQ(vantiro_peach_execute(run), -9);
  EXPECT_TRUE(contains(testing::internal::GetCapturedStderr(), "own receiver"));
  EXPECT_EQ(threads, std::vector{std::this_thread::get_id()});
  EXPECT_GT(inner, 0);
  EXPECT_EQ(ended, -13);
  EXPECT_EQ(removed, 0);
}

TEST_F(PeachRun, RunsWithASingleCall) {
  const std::string state = "stateDir=" + path("state");
  const int run = vantiro_peach(6, "executable=echo $VANTIRO_PARAM_x >out", "jobs=2", state.c_str(),
                                "projectParam=x=7", "outputFile=out", "priority=low");
  ASSERT_GT(run, 0) << last_error();
  const auto next = [&] {
    return text_of([&](char *b, unsigned int *s) { return vantiro_peachNextFile(run, b, s); });
  };
  const std::string file = next();
  EXPECT_EQ(read(file), "7\n");
  EXPECT_EQ(next(), path("state/job-2/out"));
  EXPECT_EQ(next(), "<null>");
  EXPECT_EQ(vantiro_peachDone(run), 0);
  EXPECT_EQ(vantiro_peach(1, "executable=false"), -5);
  testing::internal::CaptureStderr();
  EXPECT_EQ(vantiro_peach(1, "colour=red"), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  const std::string told = testing::internal::GetCapturedStderr();
  EXPECT_TRUE(contains(told, "colour=red") && contains(told, "outputFile")) << told;
}

TEST_F(PeachRun, SaysWhatIsMissing) {
  const auto failure = [&](auto configure) {
    const int run = new_run("./program", 1);
    configure(run);
    EXPECT_LT(vantiro_peach_execute(run), 0);
    const std::string text = message(run);
    vantiro_peach_done(run);
    return text;
  };
  EXPECT_TRUE(contains(failure([](int) {}), "status 127 (command not found")) << last_error();
  EXPECT_TRUE(contains(failure([](int run) { vantiro_peach_addParamFile(run, "/no/such/file"); }),
                       "/no/such/file"));
  EXPECT_TRUE(contains(
      failure([](int run) { vantiro_peach_addParamExternalResource(run, "/no/such/resource"); }),
      "/no/such/resource"));
  EXPECT_TRUE(contains(failure([](int run) { vantiro_peach_addExeImport(run, "no-bundle"); }),
                       "no-bundle"));
  EXPECT_TRUE(contains(failure([](int run) {
                         vantiro_peach_setExecutable(run, "true");
                         vantiro_peach_addOutputFile(run, "never-written");
                       }),
                       "never-written"));
}
