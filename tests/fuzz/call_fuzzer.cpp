// Whole calls on the fake runtime, with hostile strings, counts, sizes and results.
#include <fuzzer/FuzzedDataProvider.h>
#include <jni.h>

#include <algorithm>
#include <cstring>
#include <vector>

#include "fake_jvm.h"
#include "fuzzing.h"
#include "vantiro.h"

namespace {

// The machine is joined by hand: nothing is loaded here.
bool start() {
  jsize count = 0;
  fake::run_machine();
  JNI_GetCreatedJavaVMs(&jvm, 1, &count);
  jvm->AttachCurrentThread(reinterpret_cast<void **>(&env), nullptr);
  const jclass local = env->FindClass("fi/vantiro/user/ManagementImpl");
  cls = static_cast<jclass>(env->NewGlobalRef(local));
  return vantiro_init() == VANTIRO_OK && vantiro_peach_handle() == VANTIRO_OK;
}

// Strings, some of them null, that live as long as the input does.
class Strings {
 public:
  Strings(FuzzedDataProvider &input, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
      texts_.push_back(input.ConsumeRandomLengthString(64));
      nulls_.push_back(input.ConsumeIntegralInRange(0, 9) == 0);
    }
    for (std::size_t i = 0; i < count; ++i) {
      pointers_.push_back(nulls_[i] ? nullptr : texts_[i].c_str());
    }
  }
  const char **list() { return pointers_.data(); }
  const char *operator[](std::size_t i) const { return pointers_[i]; }

 private:
  std::vector<std::string> texts_;
  std::vector<bool> nulls_;
  std::vector<const char *> pointers_;
};

// A buffer that is exactly as large as it is said to be, so that a byte too many is seen.
class Buffer {
 public:
  explicit Buffer(unsigned int capacity) : size(capacity), bytes_(capacity, '#') {}
  char *data() { return bytes_.data(); }
  void check(int status, const std::string &text) const {
    if (status == VANTIRO_OK && size != 0) {
      REQUIRE(size <= bytes_.size() && size == std::strlen(text.c_str()) + 1);
      REQUIRE(std::memcmp(bytes_.data(), text.c_str(), size) == 0);
    }
    REQUIRE(status != VANTIRO_ERROR_BUFFER_TOO_SMALL || size > bytes_.size());
  }
  unsigned int size;

 private:
  std::vector<char> bytes_;
};

// Null pointers and counts without a list are the callers' to give, too long lists are not.
void call_with_lists(FuzzedDataProvider &input) {
  constexpr int most = 8;
  Strings strings(input, 2 * most + 12);
  const int count1 = input.ConsumeIntegralInRange(-2, most);
  const int count2 = input.ConsumeIntegralInRange(-2, most);
  const char **const list = input.ConsumeBool() ? strings.list() : nullptr;
  const int number = input.ConsumeIntegral<int>();
  vantiro_createProject2(number, ~number, strings[0], count1, list);
  vantiro_createBundle2(number, strings[1], strings[2], strings[3], strings[4], strings[5],
                        strings[6], strings[7], strings[8], strings[9], count1, count2, list);
  vantiro_peach_addJobFileWithDir3(number, strings[1], count2, list);
  const char **const s = strings.list();
  vantiro_createSignedBundle(number, s[0], s[1], s[2], s[3], s[4], s[5], s[6], s[7], s[8], s[9],
                             s[10], count1, count2, s[0], s[1], s[2], s[3], s[4], s[5], s[6], s[7],
                             s[8], s[9], s[10], s[11], s[12], s[13], s[14], s[15]);
  vantiro_initWithoutFile(s[0], s[1], s[2], s[3], number, s[4], s[5], ~number, 0, s[6], s[7]);
}

void call_for_strings(FuzzedDataProvider &input, const std::string &text, jlong number) {
  Buffer buffer(input.ConsumeIntegralInRange(0u, 80u));
  Buffer element(input.ConsumeIntegralInRange(0u, 80u));
  const Strings key(input, 1);
  buffer.check(vantiro_getProjectParamValue(1, key[0], buffer.data(), &buffer.size), text);
  int index = input.ConsumeIntegral<int>();
  const int status = vantiro_getResultFiles(1, &index, element.data(), &element.size);
  if (status != VANTIRO_ERROR_INDEX_OUT_OF_BOUNDS) {
    element.check(status, text);
  } else {
    REQUIRE(index == static_cast<int>(number) && element.size == 1);
  }
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
  if (!env) REQUIRE(start());
  FuzzedDataProvider input(data, size);
  const auto number = input.ConsumeIntegral<jlong>();
  const std::string text = input.ConsumeRandomLengthString(80);
  fake::returns("", number, text);
  if (input.ConsumeBool()) fake::fail_any(input.ConsumeIntegralInRange(1, 60));
  call_with_lists(input);
  call_for_strings(input, text, number);
  fake::behave();
  fake::trace();
  REQUIRE(fake::unreleased_characters() == 0);
  fake::forget_references();
  // Unless it was an initialiser that failed, the next call works.
  if (!env || !sgc) REQUIRE(start());
  REQUIRE(vantiro_open() == VANTIRO_OK);
  return 0;
}
