// The library where it lies: loaded by its path, with the configuration and archives beside it.
#include <dlfcn.h>

#include "support.h"

namespace {

class Placement : public testing::Test {
 protected:
  Placement() {
    unsetenv("JAVA_HOME");
    unsetenv("PATH");
    tree.link(LIBRARY_NAME, BUILD_DIRECTORY "/stage/" LIBRARY_NAME);
    tree.file("VantiroDLL.conf", "JVMPATH=" BUILD_DIRECTORY "/libfakejvm.so\n");
  }

  // Starts the library of that directory; gives what the machine was created with.
  std::string start(const std::string &directory) {
    void *const library = dlopen((directory + "/" LIBRARY_NAME).c_str(), RTLD_NOW);
    EXPECT_NE(library, nullptr) << dlerror();
    if (!library) return "";
    const auto init = reinterpret_cast<int (*)()>(dlsym(library, "vantiro_initJava"));
    EXPECT_EQ(init(), 0);
    return fake::trace("JNI_CreateJavaVM");
  }

  static std::string creation(const std::string &directory) {
    return lines({"JNI_CreateJavaVM 10004 ignoreUnrecognized=1 -Djava.class.path=" + directory +
                  "/vantiro.jar:" + directory + "/commons-codec-1.3.jar:" + directory +
                  "/xmlrpc-2.0.jar -Xmx128M -Dcom.sun.management.jmxremote"});
  }

  Tree tree;
};

TEST_F(Placement, IsTheDirectoryOfTheLinkAndNotOfItsTarget) {
  EXPECT_EQ(start(tree.path()), creation(tree.path()));
}

// All but the colon, at which Java splits the class path.
TEST_F(Placement, MayHaveAnyCharacterInItsName) {
  std::string odd = "\xc3\xa4\xff %s%n";
  for (char c = 1; c != 127; ++c) odd += c == '/' || c == ':' ? ' ' : c;
  tree.link(odd + "/" LIBRARY_NAME, BUILD_DIRECTORY "/stage/" LIBRARY_NAME);
  tree.file(odd + "/VantiroDLL.conf", "JVMPATH=" BUILD_DIRECTORY "/libfakejvm.so\n");
  EXPECT_EQ(start(tree.path(odd)), creation(tree.path(odd)));
}

TEST_F(Placement, MayBeAsDeepAsTheSystemAllows) {
  const std::string directory = tree.path_of_length(4050);
  EXPECT_EQ(start(directory), creation(directory));
}

}  // namespace
