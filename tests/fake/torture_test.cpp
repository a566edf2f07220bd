// Every call of the runtime that can fail is made to fail: once, and from then on.
#include <algorithm>
#include <functional>
#include <tuple>

#include "calls.h"
#include "support.h"

namespace {

using Statuses = std::vector<int>;
using Functions = std::vector<std::string>;

auto host_state() {
  return std::tuple(jvm, env, cls, sgc, pwcls, pwobj, jvmlibHandle,
                    vantiro_peach_intermediate_callback_fun);
}

// The functions of the runtime that `call` uses and that can fail; all of them work.
template <typename Make>
Functions functions_of(const Make &make) {
  fake::fail_any(0);
  make();
  return fake::fallible_calls();
}

// From `failing` on everything fails: what is no failure of the call shows in the next that is.
int status_when_all_fail(const Statuses &statuses, std::size_t failing) {
  while (statuses[failing] >= 0 && failing + 1 < statuses.size()) ++failing;
  return statuses[failing];
}

class TorturedCall {
 public:
  explicit TorturedCall(const Call &call) : call_(call) {
    functions_ = functions_of([this] { success_ = call_.make(good_); });
    EXPECT_GE(success_, 0);
    for (std::size_t i = 0; i < functions_.size(); ++i) statuses_.push_back(status_when_fails(i));
  }

  // The number of failures that were tried.
  int run() const {
    for (std::size_t i = 0; i < functions_.size(); ++i) {
      for (const bool and_all_behind : {false, true}) {
        SCOPED_TRACE(testing::Message() << call_ << ": " << functions_[i] << ", number " << i
                                        << (and_all_behind ? " and all behind it" : ""));
        fail(i, and_all_behind);
        Places again;
        EXPECT_EQ(call_.make(again), success_);
        expect_places(success_, true, again);
        fake::forget_references();
      }
    }
    return static_cast<int>(2 * functions_.size());
  }

 private:
  void fail(std::size_t failing, bool and_all_behind) const {
    vantiro_peach_handle();
    const auto before = host_state();
    fake::fail_any(static_cast<int>(failing) + 1, and_all_behind);
    Places out;
    const int status = call_.make(out);
    fake::fail_any(0);
    EXPECT_EQ(status,
              and_all_behind ? status_when_all_fail(statuses_, failing) : statuses_[failing]);
    expect_places(status, functions_[failing] != "GetStringUTFChars", out);
    EXPECT_EQ(fake::unreleased_characters(), 0);
    const bool is_left = functions_[failing].ends_with("MethodID") &&
                         (!clears_first() || starts("peach.setIntermediateResultHandler"));
    EXPECT_TRUE(status >= 0 || is_left || fake::pending().empty()) << fake::pending();
    EXPECT_TRUE(starts("unload") || host_state() == before);
  }

  bool starts(const char *text) const { return std::string(call_.record).starts_with(text); }

  // All others build lists before they clear what an earlier call left pending.
  bool clears_first() const {
    return starts("peach.") || starts("System.") || starts("printStatistics");
  }

  // How many strings that makes: those of each list, and the one that its slots start as.
  long early_strings() const {
    if (clears_first()) return 0;
    const std::string record = call_.record;
    if (record.find(FIVE_RECORDED) != record.npos) return 7;
    return record.find(THREE_RECORDED) != record.npos ? 4 : 0;
  }

  int status_when_fails(std::size_t failing) const {
    const std::string &function = functions_[failing];
    // It has no status: a null class stands for every failure.
    if (call_.is("vantiro_getPluginClass")) return VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
    if (function == "AttachCurrentThread") return VANTIRO_ERROR_NOT_INITIALIZED;
    if (function.ends_with("MethodID")) return VANTIRO_ERROR_METHOD_NOT_FOUND;
    if (function == "GetStringUTFChars") return VANTIRO_OK;
    if (function == "FindClass" && starts("System.")) return VANTIRO_ERROR_METHOD_NOT_FOUND;
    const auto end = functions_.begin() + static_cast<long>(failing);
    const bool is_of_a_list = function == "NewStringUTF"
                                  ? std::count(functions_.begin(), end, function) < early_strings()
                                  : !clears_first() && !function.starts_with("Call");
    return is_of_a_list ? success_ : VANTIRO_ERROR_UNCAUGHT_EXCEPTION;
  }

  void expect_places(int status, bool with_text, const Places &out) const {
    if (status == VANTIRO_ERROR_NOT_INITIALIZED && explains()) {
      EXPECT_EQ(out.size, 54u);
    } else if (status < 0) {
      EXPECT_TRUE(out.untouched());
    } else {
      EXPECT_EQ(out.size, with_text ? good_.size : 0u);
      EXPECT_EQ(out.index, good_.index);
      EXPECT_EQ(out.buffer[0], with_text ? good_.buffer[0] : '#');
      EXPECT_EQ(std::string(out.buffer + 1, sizeof out.buffer - 1),
                std::string(good_.buffer + 1, sizeof out.buffer - 1));
    }
  }
  bool explains() const {
    return call_.is("vantiro_getLastErrorMessage") || call_.is("vantiro_getPluginConf");
  }

  const Call call_;
  Places good_;
  int success_ = 0;
  Functions functions_;
  Statuses statuses_;  // for each of the functions, the status when that one fails
};

using Torture = Initialized;

TEST_F(Torture, OfEveryCall) {
  fake::returns("", 3);
  vantiro_peach_handle();
  std::vector<Call> calls = all_calls();
  calls.push_back(CALL("peach.get()I", vantiro_peach_handle()));
  calls.push_back(CALL("System.getProperty(S)S 'k'", vantiro_getJavaSystemProperty("k", OUT)));
  calls.push_back(CALL("getPluginClass(S)LClass; 'a'", vantiro_getPluginClass("a") ? 0 : -13));
  int failures = 0;
  for (const Call &call : calls) failures += TorturedCall(call).run();
  EXPECT_GT(failures, 1000);
  std::cout << calls.size() << " calls, " << failures << " failures\n";
}

// Nothing is written by a failed fetch but the class.
TEST_F(Torture, OfTheParallelEachObject) {
  fake::returns("get", 5);
  // Attachment, look-up, class, its reference, object, its reference; look-up, call.
  const Statuses statuses = {-11, -12, -13, -13, -13, -13, -12, -13};
  for (std::size_t i = 0; i < statuses.size(); ++i) {
    for (const bool and_all_behind : {false, true}) {
      SCOPED_TRACE(i);
      vantiro_unload(0);
      fake::fail_any(static_cast<int>(i) + 1, and_all_behind);
      EXPECT_EQ(vantiro_peach_handle(), statuses[i]);
      fake::fail_any(0);
      EXPECT_EQ(pwobj != nullptr, i >= 6);
      EXPECT_EQ(fake::pending(), "");
      EXPECT_EQ(vantiro_peach_handle(), 5);
    }
  }
}

class TorturedStart : public OnFakeRuntime {
 protected:
  // `statuses` are those of `start` in the state that `prepare` makes, one for each function of the
  // runtime that can fail.
  static void run(const std::function<int()> &start, const std::function<void()> &prepare,
                  const Statuses &statuses) {
    prepare();
    EXPECT_THAT(functions_of(start), testing::SizeIs(statuses.size()));
    for (std::size_t i = 0; i < statuses.size(); ++i) {
      for (const bool and_all_behind : {false, true}) {
        SCOPED_TRACE(testing::Message() << "number " << i << (and_all_behind ? " and behind" : ""));
        prepare();
        const bool was_started = env;
        const auto type = cls;
        const auto object = sgc;
        fake::fail_any(static_cast<int>(i) + 1, and_all_behind);
        const int status = start();
        fake::fail_any(0);
        EXPECT_EQ(status, and_all_behind ? status_when_all_fail(statuses, i) : statuses[i]);
        expect_state(status, was_started, type, object);
        prepare();
        EXPECT_EQ(start(), VANTIRO_OK);
      }
    }
  }

  static void expect_state(int status, bool was_started, jclass type, jobject object) {
    EXPECT_TRUE(jvmlibHandle && !pwcls && !pwobj && !vantiro_peach_intermediate_callback_fun);
    switch (status) {
      case VANTIRO_ERROR_NOT_INITIALIZED:
        EXPECT_TRUE(!!env == was_started && cls == type && sgc == object);
        break;
      case VANTIRO_ERROR_METHOD_NOT_FOUND:
        EXPECT_TRUE(jvm && !env && !cls && sgc == object);
        break;
      case VANTIRO_ERROR_CONSTRUCTOR_MISSING:
        EXPECT_TRUE(jvm && !env && cls && sgc == object);
        break;
      case VANTIRO_ERROR_INITIALIZATION:
        EXPECT_TRUE(jvm && env && cls && !sgc);
        break;
      default:
        EXPECT_TRUE(jvm && env && cls && (sgc != object || !object));
    }
  }

  static void stop() {
    fake::stop_machine();
    jvm = nullptr, env = nullptr, cls = nullptr, sgc = nullptr;
  }
  static void join() {
    stop();
    fake::run_machine();
  }
  static int initialize() { return vantiro_initFile("f"); }
};

// Behind the start: constructor, object, its reference, initialiser, string, call.
TEST_F(TorturedStart, ThatCreatesAMachine) {
  // Created machines, creation, class, its reference, attachment.
  run(initialize, stop, {0, -11, -12, -12, 0, -14, -16, -16, -15, -13, -13});
  run(vantiro_initJava, stop, {0, -11, -12, -12, 0});
  run(initialize,
      [] {
        stop();
        vantiro_init();
        fake::lacks("ManagementImpl.<init>");
        vantiro_init();
        fake::behave();
      },
      {0, -11, -12, -12, 0, -14, -16, -16, -15, -13, -13});
}

TEST_F(TorturedStart, ThatJoinsAMachine) {
  // Created machines (a second one is not created), attachment, environment, ...
  run(initialize, join, {-11, -11, -11, -12, -12, 0, -14, -16, -16, -15, -13, -13});
  run(vantiro_initJava, join, {-11, -11, -11, -12, -12, 0});
}

TEST_F(TorturedStart, ThatFindsAMachineStarted) {
  run(initialize,
      [] {
        stop();
        vantiro_initJava();
      },
      {-11, -14, -16, -16, -15, -13, -13});
  run(initialize,
      [] {
        stop();
        vantiro_init();
      },
      {-11, -14, -16, -16, -15, -13, -13});
}

}  // namespace
