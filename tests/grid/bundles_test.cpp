// What the local grid takes for a bundle, and how it tells bundles apart.
#include <sys/wait.h>

#include <cstdlib>

#include "grid_test.h"

namespace {

class Bundles : public GridTest {
 protected:
  void SetUp() override {
    GridTest::SetUp();
    project = vantiro_createEmptyProject(vantiro_open(), 0, "p");
    ASSERT_GT(project, 0) << last_error();
  }

  // Only what is needed is given; the rest is null.
  int create(const char *prefix, const std::string &name, const char *version,
             const char *platform = nullptr) {
    const std::string content = name + (prefix ? prefix : "") + (platform ? platform : "");
    const std::string base = fs::path(write("files/file", content)).parent_path();
    return vantiro_createBundle(project, name.c_str(), version, prefix, platform, nullptr,
                                path("made").c_str(), base.c_str(), nullptr, nullptr, 1, 0, "file");
  }

  void upload(const char *prefix, const std::string &name, const char *version,
              const char *platform = nullptr) {
    ids.push_back(create(prefix, name, version, platform));
    EXPECT_EQ(vantiro_uploadBundle(project), 0) << last_error();
  }

  // What a job finds in the file of the bundles that its project uses.
  std::string found() {
    vantiro_createProjectJobs(project, 1, ("cp file " + path("found")).c_str());
    vantiro_markAllJobsCreated(project);
    vantiro_startProject(project);
    EXPECT_EQ(vantiro_waitCompletion(project), 0) << last_error();
    return read(path("found"));
  }

  int project = 0;
  std::vector<int> ids;
};

}  // namespace

TEST_F(Bundles, KeepPermissionsAndNames) {
  fs::permissions(write("b/bin/helper", "#!/bin/sh\ncat file\n"), fs::perms(0750));
  fs::permissions(write("b/run", "#!/bin/sh\nexec ./bin/helper\n"), fs::perms(0644));
  const auto bundle = [&](const char *first, const char *second) {
    return vantiro_createBundle(project, "modes", "1", nullptr, nullptr, nullptr,
                                path("made").c_str(), path("b").c_str(), "run", nullptr, 3, 1,
                                "run", first, second, "shared");
  };
  EXPECT_EQ(bundle("../x/name", "../y/name"), -8);
  const std::string x = write("x/name", ""), y = write("y/name", "");
  EXPECT_EQ(bundle("../x/name", "../y/name"), -13);
  EXPECT_TRUE(contains(last_error(), x) && contains(last_error(), y)) << last_error();
  EXPECT_GT(bundle("bin/helper", "bin/helper"), 0) << last_error();
  EXPECT_EQ(vantiro_signJar(path("made/modes@1.jar").c_str(), "me"), 0) << last_error();
  EXPECT_EQ(vantiro_uploadBundle(project), 0) << last_error();
  upload(nullptr, "shared", "1");
  EXPECT_EQ(vantiro_approveUploadedBundles(project), 2) << last_error();
  EXPECT_EQ(vantiro_useBundle(project, "modes"), 0) << last_error();
  vantiro_createProjectJobs(project, 1, ("./run >" + path("ran")).c_str());
  found();
  EXPECT_EQ(read(path("ran")), "shared") << "a file of an import";
}

TEST_F(Bundles, ThatAreDamagedKeepNoOtherFromApproval) {
  upload(nullptr, "good", "1");
  upload(nullptr, "bad", "1");
  ASSERT_EQ(vantiro_signJar(path("made/bad@1.jar").c_str(), "me"), 0);
  ASSERT_EQ(std::system(("cd " + scratch + "; mkdir bad; cd bad; echo altered >file; python3 -c '" +
                         "import zipfile as z\n"
                         "with z.ZipFile(\"../made/bad@1.jar\") as old:\n"
                         " with z.ZipFile(\"../home/bundles/uploaded/bad@1.jar\", \"w\") as new:\n"
                         "  new.writestr(old.infolist()[0], old.read(old.infolist()[0]))\n"
                         "  new.write(\"file\")'")
                            .c_str()),
            0);
  EXPECT_EQ(vantiro_approveUploadedBundles(project), 1) << last_error();
  EXPECT_EQ(vantiro_bundleExists("good") + vantiro_bundleExists("bad"), 1);
  EXPECT_TRUE(fs::exists(path("home/bundles/damaged/bad@1.jar")));
  write("home/bundles/uploaded/bad@1.jar", "no archive");
  EXPECT_EQ(vantiro_approveUploadedBundles(project), -7) << "there was nothing else";
  write("home/bundles/approved/bad@1.jar", "no archive");
  EXPECT_EQ(vantiro_useBundle(project, "good"), 0) << last_error();
}

TEST_F(Bundles, OfSimilarNamesAreSeveral) {
  upload("a", "b.c", "1");
  upload("a.b", "c", "1");
  upload(nullptr, "a.b.c", "1");
  upload("a.b", "c-1", "1");
  upload("a.b", "c", "1-1");
  EXPECT_EQ(std::set<int>(ids.begin(), ids.end()).size(), ids.size());
  EXPECT_EQ(vantiro_approveUploadedBundles(project), 5) << last_error();
  EXPECT_EQ(vantiro_setBundleId(project, ids[0]), 0) << last_error();
  EXPECT_EQ(found(), "b.ca");
}

TEST_F(Bundles, AreTakenForThePlatformThatFitsBest) {
  upload("x", "tool", "10", "windows-amd64");
  upload("x", "tool", "10");
  upload("x", "tool", "10", "Linux");
  EXPECT_EQ(std::set<int>(ids.begin(), ids.end()).size(), 1u) << "one bundle, several platforms";
  upload("x", "tool", "9", "Linux");
  EXPECT_EQ(vantiro_approveUploadedBundles(project), 4) << last_error();
  EXPECT_EQ(vantiro_useBundle(project, "tool"), 0) << last_error();
  EXPECT_EQ(vantiro_getBundleId(project), ids[0]) << "a number is greater than another";
  EXPECT_EQ(found(), "toolxLinux");
  EXPECT_EQ(create("x", "tool", "3", "lniux"), VANTIRO_ERROR_UNCAUGHT_EXCEPTION);
  EXPECT_TRUE(contains(last_error(), "linux-amd64") && contains(last_error(), "lniux"))
      << last_error();
}

TEST_F(Bundles, AreApprovedBySeveralProgramsAtOnce) {
  start_other("bundles");
  for (int i = 0; i < 40; ++i) {
    upload(nullptr, "bundle", std::to_string(i).c_str());
    EXPECT_GE(vantiro_approveUploadedBundles(project), 0) << last_error();
  }
  EXPECT_EQ(vantiro_bundleVersionExists("bundle", "39"), 1);
  EXPECT_EQ(waitpid(process, nullptr, WNOHANG), 0) << "the other program met an error";
}

TEST_F(Bundles, DoNotLeaveTheirDirectory) {
  ASSERT_EQ(std::system(("cd " + scratch + " && mkdir evil && cd evil && printf x >x &&" +
                         "python3 -c 'import zipfile as z\n"
                         "with z.ZipFile(\"name.zip\", \"w\") as f:\n"
                         " f.writestr(\"good\", \"x\")\n"
                         " f.writestr(\"../x\", \"x\")\n"
                         "with z.ZipFile(\"link.zip\", \"w\") as f: f.writestr(\"out/x\", \"x\")'")
                            .c_str()),
            0);
  EXPECT_EQ(vantiro_unzipFile(path("evil/name.zip").c_str(), path("to").c_str(), nullptr), -7);
  EXPECT_TRUE(contains(last_error(), "../x")) << last_error();
  EXPECT_FALSE(fs::exists(path("to/good"))) << "it is known before anything is written";
  fs::create_directories(path("to"));
  fs::create_directories(path("elsewhere"));
  fs::create_directory_symlink(path("elsewhere"), path("to/out"));
  EXPECT_EQ(vantiro_unzipFile(path("evil/link.zip").c_str(), path("to").c_str(), nullptr), -7);
  EXPECT_TRUE(fs::is_empty(path("elsewhere"))) << "written through a link";
  EXPECT_FALSE(fs::exists(path("x")));
}
