// Bundles: created, signed, uploaded, approved, looked up and selected.
#include "vantiro/bundles.h"

#include "bridge/call.h"
#include "bridge/variadic.h"

using namespace vantiro;
using management::call;

int vantiro_createBundle(int handle, const char *s1, const char *s2, const char *s3, const char *s4,
                         const char *s5, const char *s6, const char *s7, const char *s8,
                         const char *s9, int count1, int count2, ...) {
  VANTIRO_GATHER(list, count2, strings_of(count1, count2));
  return vantiro_createBundle2(handle, s1, s2, s3, s4, s5, s6, s7, s8, s9, count1, count2, list);
}

int vantiro_createBundle2(int handle, const char *s1, const char *s2, const char *s3,
                          const char *s4, const char *s5, const char *s6, const char *s7,
                          const char *s8, const char *s9, int count1, int count2,
                          const char **list) {
  return call(Int{}, "createBundle", handle, s1, s2, s3, s4, s5, s6, s7, s8, s9,
              PairedStringList{count1, count2, list});
}

int vantiro_createBundle3(int handle, const char *s1, const char *s2, const char *s3,
                          const char *s4, const char *s5, const char *s6, const char *s7,
                          const char *s8, const char *s9, int count1, int count2,
                          const char **list) {
  return vantiro_createBundle2(handle, s1, s2, s3, s4, s5, s6, s7, s8, s9, count1, count2, list);
}

int vantiro_createSignedBundle(int handle, const char *s1, const char *s2, const char *s3,
                               const char *s4, const char *s5, const char *s6, const char *s7,
                               const char *s8, const char *s9, const char *s10, const char *s11,
                               int count1, int count2, ...) {
  VANTIRO_GATHER(list, count2, strings_of(count1, count2));
  return vantiro_createSignedBundle2(handle, s1, s2, s3, s4, s5, s6, s7, s8, s9, s10, s11, count1,
                                     count2, list);
}

// Java takes the eleventh string behind the lists.
int vantiro_createSignedBundle2(int handle, const char *s1, const char *s2, const char *s3,
                                const char *s4, const char *s5, const char *s6, const char *s7,
                                const char *s8, const char *s9, const char *s10, const char *s11,
                                int count1, int count2, const char **list) {
  return call(Int{}, "createSignedBundle", handle, s1, s2, s3, s4, s5, s6, s7, s8, s9, s10,
              PairedStringList{count1, count2, list}, s11);
}

int vantiro_createSignedBundle3(int handle, const char *s1, const char *s2, const char *s3,
                                const char *s4, const char *s5, const char *s6, const char *s7,
                                const char *s8, const char *s9, const char *s10, const char *s11,
                                int count1, int count2, const char **list) {
  return vantiro_createSignedBundle2(handle, s1, s2, s3, s4, s5, s6, s7, s8, s9, s10, s11, count1,
                                     count2, list);
}

int vantiro_signJar(const char *first, const char *second) {
  return call(Int{}, "signJar", first, second);
}

int vantiro_uploadBundle(int handle) { return call(Int{}, "uploadBundle", handle); }

int vantiro_uploadBundleWithName(int handle, const char *text) {
  return call(Int{}, "uploadBundle", handle, text);
}

int vantiro_approveUploadedBundles(int handle) {
  return call(Int{}, "approveUploadedBundles", handle);
}

int vantiro_bundleExists(const char *text) { return call(Boolean{}, "bundleExists", text); }

int vantiro_bundleWithPrefixExists(const char *first, const char *second) {
  return call(Boolean{}, "bundleExists", first, second);
}

int vantiro_bundleVersionExists(const char *first, const char *second) {
  return call(Boolean{}, "bundleVersionExists", first, second);
}

int vantiro_useBundle(int handle, const char *text) {
  return call(Int{}, "useBundle", handle, text);
}

int vantiro_useBundleWithPrefix(int handle, const char *first, const char *second) {
  return call(Int{}, "useBundle", handle, first, second);
}

int vantiro_getBundleId(int handle) { return call(Int{}, "getBundleId", handle); }

int vantiro_setBundleId(int handle, int value) { return call(Int{}, "setBundleId", handle, value); }

int vantiro_getLastCreatedBundleName(int handle, char *buffer, unsigned int *size) {
  return call(String({buffer, size}, nothing_on_null), "getLastCreatedBundleName", handle);
}
