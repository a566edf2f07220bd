// Where the Java runtime library is looked for. No runtime is loaded.
#include <sys/stat.h>

#include <vector>

#include "host/discovery.h"
#include "support.h"

namespace {

// The places of each machine, in order, and where a launcher lies above them.
#ifdef __i386__
#define ARCHITECTURE "i386"
const std::string bin = "jre/bin";
const std::vector<std::string> below_java_home = {
    "jre/lib/i386/server/libjvm.so", "jre/i386/client/libjvm.so", "lib/i386/server/libjvm.so",
    "lib/i386/client/libjvm.so"};
const std::vector<std::string> below_launcher = {
    "jre/lib/i386/client/libjvm.so", "jre/lib/i386/server/libjvm.so", "lib/i386/client/libjvm.so",
    "lib/i386/server/libjvm.so"};
const std::string passed_over = "jre/lib/i386/client/libjvm.so";
#else
#define ARCHITECTURE "amd64"
const std::string bin = "bin";
const std::vector<std::string> below_java_home = {
    "lib/server/libjvm.so", "jre/lib/amd64/server/libjvm.so", "lib/amd64/server/libjvm.so"};
const std::vector<std::string> below_launcher = below_java_home;
const std::string passed_over = "lib/i386/server/libjvm.so";
#endif
const std::string launcher = bin + "/java";
const std::string place = below_launcher.back();

class Discovery : public testing::Test {
 protected:
  Discovery() {
    unsetenv("JAVA_HOME");
    unsetenv("PATH");
    std::filesystem::current_path(tree.path());
  }

  std::string find(const std::string &directory) {
    vantiro::find_runtime({buffer}, directory);
    return found();
  }
  std::string find() { return find(tree.path()); }

  // Looks on PATH only. What was tried last is told for a search without success.
  std::string search(const std::string &value) {
    setenv("PATH", value.c_str(), 1);
    const int result = vantiro_findJavaInPath(buffer);
    EXPECT_EQ(getenv("PATH"), value);
    return result == 0 ? found() : "-1 " + found();
  }

  // What is opened on the way is closed again.
  static int open_files() {
    int files = 0;
    for (const auto &entry : std::filesystem::directory_iterator("/proc/self/fd"))
      files += !entry.path().empty();
    return files;
  }
  void TearDown() override { EXPECT_EQ(open_files(), files_at_start); }

  std::string found() const {
    EXPECT_EQ(std::string(buffer + vantiro::path_capacity, 16), std::string(16, '#'));
    return buffer;
  }

  Tree tree;
  char buffer[vantiro::path_capacity + 17] = "";
  const int files_at_start = open_files();

 private:
  void SetUp() override { std::string(17, '#').copy(buffer + vantiro::path_capacity, 17); }
};

// Removes one location after the other: each must have been in front of all that remain.
template <typename Find>
void expect_order(const Tree &tree, const std::vector<std::string> &locations, Find find) {
  for (const std::string &location : locations) tree.file(location);
  for (const std::string &location : locations) {
    EXPECT_EQ(find(), tree.path(location));
    tree.remove(location);
  }
}

TEST_F(Discovery, SplitsTheLinesOfTheConfiguration) {
  const std::string nothing = "libjvm.so";
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"JVMPATH=/x", "/x"},
      {"JVMPATH=/no/such/lib.so\r\nJVMPATH=/y\r\n", "/no/such/lib.so"},
      {"JVMPATH==/x\n", "/x"},
      {"=JVMPATH=/x\n", "/x"},
      {"JVMPATH=/a=b\n", "/a"},
      {"JVMPATH= /x \n", " /x "},
      {"JVMPATH = /x\n", nothing},
      {"jvmpath=/x\nJVMPATHS=/x\n#JVMPATH=/x\nJVMPAT=/x\nKEY=JVMPATH=/x\n", nothing},
      {"JVMPATH\nJVMPATH=\nJVMPATH=\r\n\n\nother\nJVMPATH=/x\n", "/x"},
      {"", nothing},
      {"\n", nothing},
  };
  for (const auto &[text, expected] : cases) {
    tree.file("VantiroDLL.conf", text);
    EXPECT_EQ(find(), expected) << text;
  }
}

TEST_F(Discovery, PassesOverAConfigurationThatIsNoFile) {
  mkfifo(tree.path("VantiroDLL.conf").c_str(), 0600);
  EXPECT_EQ(find(), "libjvm.so");
  std::filesystem::create_directories(tree.path("directory/VantiroDLL.conf"));
  EXPECT_EQ(find(tree.path("directory")), "libjvm.so");
  tree.link("device/VantiroDLL.conf", "/dev/zero");
  EXPECT_EQ(find(tree.path("device")), "libjvm.so");
}

TEST_F(Discovery, ReadsLongLinesInPieces) {
  tree.file("VantiroDLL.conf", std::string(4095, 'x') + "JVMPATH=/x\n");
  EXPECT_EQ(find(), "/x");
  tree.file("VantiroDLL.conf", std::string(4094, 'x') + "JVMPATH=/x\n");
  EXPECT_EQ(find(), "libjvm.so");
  const std::string longest(4095 - 8, 'v');
  tree.file("VantiroDLL.conf", "JVMPATH=" + longest + "rest\n");
  EXPECT_EQ(find(), longest);
}

TEST_F(Discovery, AsksItsSourcesInOrder) {
  tree.file("conf/VantiroDLL.conf", "JVMPATH=/configured\n");
  tree.file("home/" + below_java_home.back());
  tree.file("java/" + launcher);
  tree.file("java/" + place);
  setenv("JAVA_HOME", tree.path("home").c_str(), 1);
  setenv("PATH", tree.path("java/" + bin).c_str(), 1);
  EXPECT_EQ(find(tree.path("conf")), "/configured");
  EXPECT_EQ(find(), tree.path("home/" + below_java_home.back()));
  setenv("JAVA_HOME", tree.path("none").c_str(), 1);
  EXPECT_EQ(find(), tree.path("java/" + place));
  unsetenv("JAVA_HOME");
  EXPECT_EQ(find(), tree.path("java/" + place));
  unsetenv("PATH");
  EXPECT_EQ(find(), "libjvm.so");
}

TEST_F(Discovery, TriesJavaHomeInOrder) {
  setenv("JAVA_HOME", tree.path().c_str(), 1);
  expect_order(tree, below_java_home, [this] { return find(); });
  tree.file(passed_over);
  EXPECT_EQ(find(), "libjvm.so");
}

TEST_F(Discovery, TriesBelowALauncherInOrder) {
  tree.file(launcher);
  expect_order(tree, below_launcher, [this] { return search(tree.path(bin)); });
  EXPECT_EQ(search(tree.path(bin)), "-1 " + tree.path(place));
}

TEST_F(Discovery, PassesOverEntriesWithoutALauncher) {
  tree.file("a/regular/bin/java");
  std::filesystem::create_directories(tree.path("directory/java"));
  std::filesystem::create_directories(tree.path("pipe"));
  mkfifo(tree.path("pipe/java").c_str(), 0600);
  tree.link("dangling/java", "nowhere");
  tree.link("cycle/java", "other");
  tree.link("cycle/other", "java");
  tree.file("good/" + launcher);
  const std::string expected = "good/" + place;
  tree.file(expected);
  for (const char *entry : {"a/regular/bin", "directory", "pipe", "dangling", "cycle", "none"}) {
    EXPECT_EQ(search(tree.path(entry) + ":" + tree.path("good/" + bin)), tree.path(expected));
  }
  EXPECT_EQ(search("::good/" + bin + ":"), expected) << "relative, among empty entries";
}

TEST_F(Discovery, FindsNothingWithoutEntries) {
  tree.file("java");
  tree.file(place);
  EXPECT_EQ(vantiro_findJavaInPath(buffer), -1);
  EXPECT_EQ(search(""), "-1 ");
  EXPECT_EQ(search(":::"), "-1 ") << "an empty entry is not the current directory";
  EXPECT_EQ(vantiro_findJavaInPath(nullptr), -1);
}

TEST_F(Discovery, FollowsLinksFromTheCurrentDirectory) {
  tree.file("j6/" + launcher);
  tree.file("j6/" + place);
  tree.link("alternatives/java", tree.path("j6/" + launcher));
  tree.link("bin/java", tree.path("alternatives/java"));
  EXPECT_EQ(search(tree.path("bin")), tree.path("j6/" + place));

  // The kernel takes the target relative to the link's directory, and must find something too.
  tree.link("here/java", "j6/" + launcher);
  EXPECT_EQ(search(tree.path("here")), "-1 " + tree.path("here/java"));
  tree.file("here/j6/" + launcher);
  EXPECT_EQ(search(tree.path("here")), "j6/" + place);
}

// The kernel, which is asked whether the launcher opens, follows as many.
TEST_F(Discovery, FollowsAsManyLinksAsTheKernel) {
  tree.file(launcher);
  tree.file(place);
  tree.link("1/java", tree.path(launcher));
  for (int link = 2; link <= 41; ++link) {
    tree.link(std::to_string(link) + "/java", tree.path(std::to_string(link - 1) + "/java"));
  }
  EXPECT_EQ(search(tree.path("40")), tree.path(place));
  EXPECT_EQ(search(tree.path("41")), "-1 " + tree.path("41/java"));
}

TEST_F(Discovery, AsksAboutEachPlaceInOrder) {
  static std::vector<std::string> asked;
  tree.file(launcher);
  tree.file("VantiroDLL.conf", "JVMPATH=/x\n");
  setenv("PATH", ("none:" + bin).c_str(), 1);
  setenv("JAVA_HOME", "home", 1);
  const vantiro::Search noted{buffer, [](const char *path) {
                                asked.push_back(path);
                                return vantiro::opens_for_reading(path);
                              }};
  vantiro::find_runtime(noted, "elsewhere");
  std::vector<std::string> expected;
  for (const std::string &location : below_java_home) expected.push_back("home/" + location);
  expected.push_back("none/java");
  expected.push_back(launcher);
  for (const std::string &location : below_launcher) expected.push_back("./" + location);
  EXPECT_EQ(asked, expected);
}

TEST_F(Discovery, LeavesACircleThatTheKernelDoesNotSee) {
  tree.link("start/java", tree.path("p"));
  tree.link("p", "d/q");
  tree.link("d/q", "p");
  tree.file("d/p");
  tree.file(launcher);
  tree.file(place);
  EXPECT_EQ(search(tree.path("start") + ":" + tree.path(bin)), tree.path(place));
}

TEST_F(Discovery, TakesPathsThatJustFitAndPassesOverLongerOnes) {
  tree.file("VantiroDLL.conf", "JVMPATH=/configured\n");
  EXPECT_EQ(find(tree.path_of_length(4079)), "/configured");
  EXPECT_EQ(find(tree.path_of_length(4080)), "libjvm.so");

  const std::string longer = "jre/lib/" ARCHITECTURE "/server/libjvm.so";
  const std::string shorter = "lib/" ARCHITECTURE "/server/libjvm.so";
  const std::size_t longest = 4095 - 1 - longer.size();
  tree.file(longer);
  tree.file(shorter);
  setenv("JAVA_HOME", tree.path_of_length(longest).c_str(), 1);
  EXPECT_EQ(find("/none"), tree.path_of_length(longest) + "/" + longer);
  setenv("JAVA_HOME", tree.path_of_length(longest + 1).c_str(), 1);
  EXPECT_EQ(find("/none"), tree.path_of_length(longest + 1) + "/" + shorter);
  unsetenv("JAVA_HOME");

  tree.file(launcher);
  const std::string found = tree.path(longer);
  EXPECT_EQ(search(tree.path_of_length(4090, "/" + bin)), found);
  buffer[0] = '\0';
  EXPECT_EQ(search(tree.path_of_length(4091, "/" + bin)), "-1 ");
  EXPECT_EQ(search(std::string(100000, 'x')), "-1 ");
  // The system makes no longer link.
  tree.link("long/java", tree.path_of_length(4095, "/" + launcher));
  EXPECT_EQ(search(tree.path("long")), found);
}

}  // namespace
