#include "Settings/JsonDefaultsStore.h"
#include "Storage/FileAccess.h"
#include "Support/FileBytes.h"
#include "Support/StepFileSystem.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

class DefaultsStoreTest : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  std::filesystem::path file = defaultsFile(folder.path());
  StepFileSystem files;

  void given(std::string_view contents) {
    std::filesystem::create_directories(file.parent_path());
    writeFile(file, contents);
  }
};

}  // namespace

TEST_F(DefaultsStoreTest, GivesBackEveryTypeAsItWasSet) {
  const std::pair<std::string, DefaultsValue> values[] = {
      {"bool", true},
      {"int", std::int64_t{-9'007'199'254'740'993}},
      {"whole double", 3.0},
      {"double", 0.1},
      {"large double", 1e300},
      {"string", std::string("Grüße \"x\"\n")},
      {"empty string", std::string()},
      {"strings", Strings{"en", "", "de"}},
      {"no strings", Strings{}},
      {"data", std::vector<std::uint8_t>{0, 255, '{', '"'}},
      {"no data", std::vector<std::uint8_t>{}},
  };
  JsonDefaultsStore writer(files, file);
  for (const auto& [key, value] : values) writer.set(key, value);
  const JsonDefaultsStore reader(files, file);
  for (const auto& [key, value] : values) {
    EXPECT_EQ(writer.value(key), value) << key;
    EXPECT_EQ(reader.value(key), value) << key;
  }
  EXPECT_FALSE(reader.value("absent"));
  EXPECT_FALSE(reader.get<bool>("int"));
  EXPECT_EQ(namesIn(file.parent_path()),
            (std::set<std::string>{"defaults.json", "defaults.json.good", "defaults.json.lock"}));
}

TEST_F(DefaultsStoreTest, KeepsWhatItDoesNotKnow) {
  given(R"({"later": {"nested": [1, null, {"$data": 5}]}, "mixed": [1, "a"], "huge": 18446744073709551615,
           "settings.a": true, "none": null, "odd data": {"$data": "not base64"}})");
  JsonDefaultsStore store(files, file);
  EXPECT_FALSE(store.value("later"));
  EXPECT_TRUE(store.contains("later"));
  store.set("settings.b", false);
  store.remove("settings.a");
  const auto text = contentsOf(file);
  const auto compact = [](std::string all) {
    std::erase_if(all, [](char character) { return character == ' ' || character == '\n'; });
    return all;
  };
  EXPECT_EQ(compact(text),
            R"({"huge":18446744073709551615,"later":{"nested":[1,null,{"$data":5}]},"mixed":[1,"a"],)"
            R"("none":null,"odddata":{"$data":"notbase64"},"settings.b":false})");
}

TEST_F(DefaultsStoreTest, AMistakeInTheFileCostsOneMessageAndNoSetting) {
  const std::pair<std::string, std::string> mistakes[] = {
      {"{\n  \"a\": 1,\n}", "line 2, column 9: there is a comma too many"},
      {"{\n  // later\n  \"a\": 1}", "line 2, column 3: comments are not allowed"},
      {"{\"a\": 1 \"b\": 2}", "line 1, column 9: a comma or a colon is missing"},
      {"{\"a\":1", "the text ends too early"},
      {"", "the text ends too early"},
      {"[]", "one object"},
      {"{\"a\":1,\"a\":2}", "names \"a\" twice"},
      {"{\"a\":1e999}", "a number that is too large"},
      {"\x89PNG", "line 1, column 1"},
      {"{\"a\":" + std::string(100'000, '['), "ends too early"},
  };
  JsonDefaultsStore(files, file).set("history", false);
  int number = 0;
  for (const auto& [contents, complaint] : mistakes) {
    SCOPED_TRACE(contents.substr(0, 40));
    JsonDefaultsStore running(files, file);
    given(contents);
    JsonDefaultsStore store(files, file);
    for (auto* each : {&running, &store}) {
      each->reload();
      EXPECT_EQ(each->get<bool>("history"), false) << "the last good value";
      ASSERT_EQ(each->messages().size(), 1U);
      EXPECT_TRUE(contains(each->messages().front(), complaint));
    }
    EXPECT_EQ(contentsOf(file), contents) << "somebody is editing it";
    store.set("a", std::int64_t{2});
    EXPECT_EQ(contentsOf(file.string() + ".damaged" + (++number == 1 ? "" : "-" + std::to_string(number))),
              contents);
    EXPECT_EQ(JsonDefaultsStore(files, file).get<std::int64_t>("a"), 2);
  }
}

TEST_F(DefaultsStoreTest, ALinkStaysALinkAndAReadOnlyFileIsCalledSo) {
  const auto real = folder.path() / "dotfiles" / "murmel.json";
  std::filesystem::create_directories(file.parent_path());
  std::filesystem::create_directories(real.parent_path());
  std::filesystem::create_symlink(std::filesystem::relative(real, file.parent_path()), file);
  JsonDefaultsStore store(files, file);
  store.set("a", true);
  EXPECT_TRUE(std::filesystem::is_symlink(file));
  EXPECT_TRUE(contains(contentsOf(real), "\"a\""));
  EXPECT_EQ(store.watchedFiles().size(), 2U);
  writeFile(real, "{\"a\": false}");
  EXPECT_TRUE(store.reload());
  EXPECT_EQ(store.get<bool>("a"), false);
  files.failAlways("lock", EROFS);
  store.set("a", true);
  EXPECT_TRUE(contains(store.messages().back(), "is read-only"));
}

TEST_F(DefaultsStoreTest, LeavesAFileAloneThatItCannotReadAndKeepsChangesForLater) {
  given(R"({"mine": "keep"})");
  files.failAlways("read", EIO);
  JsonDefaultsStore store(files, file);
  store.set("new", true);
  EXPECT_EQ(store.get<bool>("new"), true);
  EXPECT_FALSE(store.isStored());
  EXPECT_EQ(store.messages().size(), 1U) << "told once";
  EXPECT_EQ(contentsOf(file), R"({"mine": "keep"})");
  files.failNever();
  store.set("newer", std::int64_t{1});
  EXPECT_TRUE(store.isStored());
  const JsonDefaultsStore reader(files, file);
  EXPECT_EQ(reader.get<bool>("new"), true);
  EXPECT_EQ(reader.get<std::string>("mine"), "keep");
  EXPECT_EQ(reader.get<std::int64_t>("newer"), 1);
}

TEST_F(DefaultsStoreTest, AFailureAtAnyStepLosesNothing) {
  JsonDefaultsStore(files, file).set("old", true);
  JsonDefaultsStore counted(files, file);
  files.before({});
  counted.set("count", true);
  const int steps = files.steps();
  for (int failing = 0; failing < steps; ++failing) {
    for (const int error : {ENOSPC, EACCES}) {
      JsonDefaultsStore store(files, file);
      const auto key = std::to_string(failing) + "." + std::to_string(error);
      files.before([&](int index, std::string_view) -> std::optional<int> {
        if (index == failing) return error;
        return std::nullopt;
      });
      store.set(key, true);
      files.failNever();
      EXPECT_EQ(store.get<bool>(key), true);
      EXPECT_EQ(JsonDefaultsStore(files, file).get<bool>("old"), true) << key;
      store.set("after", true);
      EXPECT_EQ(JsonDefaultsStore(files, file).get<bool>(key), true) << key;
    }
  }
}

TEST_F(DefaultsStoreTest, AHeldLockDelaysAChangeButDoesNotLoseIt) {
  JsonDefaultsStore store(files, file);
  store.set("first", true);
  {
    PosixFileSystem others;
    const auto held = others.lock(lockPath(file), Duration::zero());
    ASSERT_TRUE(held);
    files.failAlways("lock", EWOULDBLOCK);  // without the wait
    store.set("second", true);
    EXPECT_EQ(store.messages().size(), 1U);
    EXPECT_FALSE(JsonDefaultsStore(others, file).contains("second"));
  }
  files.failNever();
  store.set("third", true);
  EXPECT_TRUE(JsonDefaultsStore(files, file).contains("second"));
}
