// Settings, sessions, bundles and plug-ins of the local grid.
#include <cstdlib>

#include "grid_test.h"

namespace {

class Management : public GridTest {
 protected:
  // Creates the bundle "acme.tool" with the file run.sh; its archive.
  std::string bundle(int project, const char *version, const char *signer) {
    const std::string base =
        fs::path(write("files/run.sh", "echo " + std::string(version))).parent_path();
    const int id = signer
                       ? vantiro_createSignedBundle(project, "tool", version, "acme", "", "a tool",
                                                    path("bundles").c_str(), base.c_str(), "run.sh",
                                                    "vendor", signer, "SHA-256", 1, 0, "run.sh")
                       : vantiro_createBundle(project, "tool", version, "acme", "", "a tool",
                                              path("bundles").c_str(), base.c_str(), "run.sh",
                                              "vendor", 1, 0, "run.sh");
    EXPECT_GT(id, 0) << last_error();
    EXPECT_EQ(text_of([&](char *b, unsigned int *s) {
                return vantiro_getLastCreatedBundleName(project, b, s);
              }),
              "acme.tool");
    return path("bundles/acme+tool@") + version + ".jar";
  }
};

}  // namespace

TEST_F(Management, RefusesSettingsThatAreWrong) {
  const auto refused = [&](const std::string &text, const char *part) {
    EXPECT_LT(vantiro_initFile(write("wrong", text).c_str()), 0);
    EXPECT_TRUE(contains(last_error(), part)) << last_error();
  };
  EXPECT_LT(vantiro_initFile(path("absent").c_str()), 0);
  EXPECT_TRUE(contains(last_error(), path("absent"))) << last_error();
  refused("grid.processors=many", "grid.processors=many");
  refused("grid.proccessors=2", "grid.processors");
  refused("log.level=LOUD", "FINEST");
  refused("temp.dir=/no/such/dir", "/no/such/dir");
  const std::string locked = write("locked", "grid.password=secret\nuser.login=somebody\n");
  EXPECT_EQ(vantiro_initFile(locked.c_str()), -3);
  EXPECT_EQ(vantiro_initFileWithPassword(locked.c_str(), "guess"), -3);
  EXPECT_EQ(vantiro_initFileWithPassword(locked.c_str(), "secret"), 0);
  EXPECT_EQ(text_of(vantiro_getUserLogin), "somebody");
  EXPECT_EQ(vantiro_initWithoutFile(path("other").c_str(), "me", "secret", scratch.c_str(), 1,
                                    "INFO", nullptr, 0, 0, "", locked.c_str()),
            0);
  EXPECT_EQ(text_of(vantiro_getUserLogin), "me");
  EXPECT_EQ(text_of(vantiro_getTempDir), scratch);
  EXPECT_EQ(vantiro_setLogLevel("LOUD"), -10);
  EXPECT_EQ(vantiro_setLogLevel("FINE"), 0);
}

TEST_F(Management, OpensSessionsAndDescribesItsCodes) {
  const int session = vantiro_open();
  EXPECT_EQ(vantiro_ready(session), 1);
  const int project = vantiro_createEmptyProject(session, 0, "p");
  EXPECT_EQ(vantiro_createProjectJobs(project, 1, "true"), 1);
  vantiro_markAllJobsCreated(project);
  vantiro_startProject(project);
  EXPECT_EQ(vantiro_waitCompletion(project), 0);
  EXPECT_EQ(vantiro_cleanup(session, 1), 1) << "the results of one project";
  EXPECT_EQ(vantiro_close(session), 0);
  EXPECT_LT(vantiro_close(session), 0);
  EXPECT_TRUE(contains(
      text_of([](char *b, unsigned int *s) { return vantiro_describeStatusCode(-5, b, s); }),
      "failed"));
  EXPECT_TRUE(contains(
      text_of([](char *b, unsigned int *s) { return vantiro_describeStatusCode(77, b, s); }),
      "77"));
  EXPECT_EQ(vantiro_unload2(1, 1), 0);
  EXPECT_GT(vantiro_open(), 0) << "it stays usable";
}

TEST_F(Management, KeepsApprovedBundlesAndGivesThemToJobs) {
  const int session = vantiro_open();
  int project = vantiro_createEmptyProject(session, 0, "p");
  bundle(project, "1.0", nullptr);
  EXPECT_EQ(vantiro_uploadBundle(project), 0) << last_error();
  EXPECT_EQ(vantiro_bundleExists("tool"), 0) << "not approved yet";
  const std::string signed_archive = bundle(project, "1.1", "signer");
  EXPECT_EQ(vantiro_uploadBundleWithName(project, signed_archive.c_str()), 0) << last_error();
  EXPECT_EQ(vantiro_approveUploadedBundles(project), 2);

  ASSERT_EQ(vantiro_initFile(path("settings").c_str()), 0) << "the store outlives the object";
  project = vantiro_createEmptyProject(vantiro_open(), 0, "p");
  EXPECT_EQ(vantiro_bundleExists("tool"), 1);
  EXPECT_EQ(vantiro_bundleWithPrefixExists("acme", "tool"), 1);
  EXPECT_EQ(vantiro_bundleWithPrefixExists("other", "tool"), 0);
  EXPECT_EQ(vantiro_bundleVersionExists("tool", "1.1"), 1);
  EXPECT_EQ(vantiro_bundleVersionExists("tool", "2.0"), 0);
  EXPECT_EQ(vantiro_useBundle(project, "absent"), -6);
  EXPECT_EQ(vantiro_getBundleId(project), 0);
  EXPECT_EQ(vantiro_useBundleWithPrefix(project, "acme", "tool"), 0);
  const int newest = vantiro_getBundleId(project);
  EXPECT_GT(newest, 0);
  EXPECT_EQ(vantiro_setBundleId(project, newest), 0);
  vantiro_createProjectJobs(project, 1, ("sh ./run.sh >" + path("seen")).c_str());
  vantiro_markAllJobsCreated(project);
  vantiro_startProject(project);
  EXPECT_EQ(vantiro_waitCompletion(project), 0) << last_error();
  EXPECT_EQ(read(path("seen")), "1.1\n");
}

TEST_F(Management, RefusesAnAlteredBundle) {
  const int project = vantiro_createEmptyProject(vantiro_open(), 0, "p");
  const std::string archive = bundle(project, "1.0", nullptr);
  EXPECT_EQ(vantiro_signJar(archive.c_str(), "signer"), 0) << last_error();
  write("run.sh", "echo altered");
  ASSERT_EQ(std::system(("jar uf " + archive + " -C " + scratch + " run.sh").c_str()), 0);
  EXPECT_EQ(vantiro_uploadBundle(project), -7);
  EXPECT_EQ(vantiro_approveUploadedBundles(project), 0);
}

TEST_F(Management, HostsPlugins) {
  write("plugins", "grid.home=" + path("home") +
                       "\nplugin.machine.class=fi.vantiro.localgrid.MachinePlugin\n"
                       "plugin.machine.label=here\n");
  ASSERT_EQ(vantiro_initFile(path("plugins").c_str()), 0) << last_error();
  vantiro_jobject plugin = nullptr, again = nullptr, none = nullptr;
  EXPECT_EQ(vantiro_getPlugin("machine", &plugin), 0);
  EXPECT_EQ(vantiro_getPlugin("machine", &again), 0);
  EXPECT_EQ(vantiro_getPlugin("absent", &none), 0);
  EXPECT_NE(plugin, nullptr);
  EXPECT_EQ(none, nullptr);
  EXPECT_NE(vantiro_getPluginClass("machine"), nullptr);
  const auto conf = [](const char *key) {
    return text_of(
        [&](char *b, unsigned int *s) { return vantiro_getPluginConf("machine", key, b, s); });
  };
  EXPECT_EQ(conf("label"), "here");
  EXPECT_EQ(conf("absent"), "");
}
