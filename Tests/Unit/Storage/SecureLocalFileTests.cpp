#include "Foundation/Crypto/AesGcm.h"
#include "Foundation/Crypto/Base64.h"
#include "Platform/Fake/FakeSecretStore.h"
#include "Storage/KeychainEncryptionKeyStore.h"
#include "Storage/SecureLocalEnvelope.h"
#include "Storage/SecureLocalFile.h"
#include "Support/FileBytes.h"
#include "Support/StepFileSystem.h"
#include "Support/TemporaryFolder.h"
#include "Support/Testing.h"

namespace {

using Case = SecureLocalStorageError::Case;
const std::string service = "app.murmel.Test.local-storage.test";

class SecureLocalFileTest : public ::testing::Test {
 protected:
  TemporaryFolder folder;
  std::filesystem::path path = folder.path() / "data" / "test.sealed";
  StepFileSystem files;
  FakeSecretStore secrets;
  KeychainEncryptionKeyStore keys{secrets, service};
  SecureLocalFile file{files, keys, path};

  SecureResult<void> write(std::string_view text) { return file.write(bytesOf(text)); }
  /// The plaintext, "(nothing)", or the error's description.
  std::string read() { return read(file); }
  static std::string read(SecureLocalFile& from) {
    const auto plaintext = from.read();
    if (!plaintext) return plaintext.error().description();
    return *plaintext ? textOf((*plaintext)->reveal()) : "(nothing)";
  }
  std::optional<Case> readError() {
    const auto plaintext = file.read();
    if (plaintext) return std::nullopt;
    return plaintext.error().which();
  }
  std::string keyInFile() {
    auto envelope = SecureLocalEnvelope::decode(bytesOf(contentsOf(path)));
    return envelope ? envelope->keyID : "(none)";
  }
  /// Only the file and its lock are there, and only the file's key.
  void expectTidy() {
    EXPECT_EQ(namesIn(path.parent_path()), (std::set<std::string>{"test.sealed", "test.sealed.lock"}));
    EXPECT_EQ(secrets.accounts(service), Strings{keyInFile()});
  }
};

}  // namespace

TEST_F(SecureLocalFileTest, KeepsDataPrivatelyUnderOneKeyThatEveryWriteReplaces) {
  EXPECT_EQ(read(), "(nothing)");
  ASSERT_TRUE(write("first words"));
  const auto firstKey = keyInFile();
  EXPECT_EQ(read(), "first words");
  ASSERT_TRUE(write("second words"));
  EXPECT_EQ(read(), "second words");
  EXPECT_NE(keyInFile(), firstKey);
  expectTidy();
  EXPECT_EQ(contentsOf(path).find("words"), std::string::npos);
  struct stat status {};
  ASSERT_EQ(::stat(path.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  ASSERT_EQ(::stat(path.parent_path().c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0700U);
  ASSERT_TRUE(write(""));
  EXPECT_EQ(read(), "");
}

TEST_F(SecureLocalFileTest, ReadsAnEnvelopeWrittenElsewhere) {
  const auto created = keys.createKey({});
  ASSERT_TRUE(created);
  const auto box = crypto::sealAes256Gcm(created->key, bytesOf("from elsewhere"));
  // Any character of a JSON string may stand there escaped.
  std::string text;
  for (const char character : base64::encoded(*box)) {
    if (character == '/') {
      text += "\\/";
    } else if (character == '+' || character == 'A') {
      text += character == '+' ? "\\u002b" : "\\u0041";
    } else {
      text += character;
    }
  }
  std::filesystem::create_directories(path.parent_path());
  writeFile(path, "MRMENC1 {\"sealedData\" : \"" + text + "\",\n\"later\":[{\"x\":null}],\"keyID\":\"" +
                      created->identifier + "\", \"version\":1}\n");
  EXPECT_EQ(read(), "from elsewhere");
}

TEST_F(SecureLocalFileTest, DeletedDataCannotBeReadFromARestoredCopy) {
  ASSERT_TRUE(write("private"));
  const auto copy = contentsOf(path);
  ASSERT_TRUE(file.deleteCryptographically());
  EXPECT_EQ(read(), "(nothing)");
  EXPECT_EQ(secrets.accounts(service), Strings{});
  writeFile(path, copy);
  EXPECT_EQ(readError(), Case::keyUnavailable);
  EXPECT_EQ(contentsOf(path), copy);
}

TEST_F(SecureLocalFileTest, RefusesEveryBrokenFileAndLeavesItAlone) {
  ASSERT_TRUE(write("do not lose"));
  const auto good = contentsOf(path);
  const auto key = keyInFile();
  const auto with = [&](std::string_view from, std::string_view to) {
    auto changed = good;
    changed.replace(changed.find(from), from.size(), to);
    return changed;
  };
  const struct {
    std::string contents;
    Case error;
  } cases[] = {
      {"", Case::invalidEnvelope},
      {"MRMENC", Case::invalidEnvelope},
      {"MRMENC1", Case::invalidEnvelope},
      {"MRMENC1{}", Case::invalidEnvelope},
      {"MRMENC2" + good.substr(7), Case::invalidEnvelope},
      {good + "x", Case::invalidEnvelope},
      {with("\"version\":1", "\"version\":\"1\""), Case::invalidEnvelope},
      {with("\"version\":1", "\"version\":2"), Case::keyUnavailable},
      {with(key, "00000000-0000-0000-0000-000000000000"), Case::keyUnavailable},
      {with("\"sealedData\":\"", "\"sealedData\":\"\",\"x\":\""), Case::authenticationFailed},
      {with("\"sealedData\":\"", "\"sealedData\":\"AAA"), Case::invalidEnvelope},
      {"MRMENC1" + std::string(1'000'000, '['), Case::invalidEnvelope},
      {"MRMENC1{\"x\":" + std::string(1'000'000, '['), Case::invalidEnvelope},
  };
  for (const auto& each : cases) {
    writeFile(path, each.contents);
    EXPECT_EQ(readError(), each.error) << each.contents.substr(0, 120);
    EXPECT_TRUE(contentsOf(path) == each.contents);
  }
  std::filesystem::resize_file(path, 0);
  std::filesystem::resize_file(path, 100'000'000);
  EXPECT_EQ(readError(), Case::invalidEnvelope);
  EXPECT_EQ(std::filesystem::file_size(path), 100'000'000);
  writeFile(path, good);
  EXPECT_EQ(read(), "do not lose");
}

TEST_F(SecureLocalFileTest, NoFlippedBitAndNoTruncationGivesOtherWords) {
  ASSERT_TRUE(write("exactly these"));
  const auto good = contentsOf(path);
  std::fstream raw(path, std::ios::binary | std::ios::in | std::ios::out);
  const auto put = [&raw](std::size_t at, int byte) {
    raw.seekp(static_cast<std::streamoff>(at));
    raw.put(static_cast<char>(byte)).flush();
  };
  for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
    put(bit / 8, good[bit / 8] ^ 1 << bit % 8);
    ASSERT_TRUE(readError()) << "bit " << bit;
    put(bit / 8, good[bit / 8]);
  }
  EXPECT_EQ(read(), "exactly these") << "reading changed nothing";
  for (auto size = good.size(); size-- > 0;) {
    std::filesystem::resize_file(path, size);
    ASSERT_TRUE(readError()) << size;
    ASSERT_EQ(std::filesystem::file_size(path), size);
  }
}

TEST_F(SecureLocalFileTest, AFileWithoutTheMagicHasNoKeyAndIsReplaced) {
  std::filesystem::create_directories(path.parent_path());
  writeFile(path, "something else");
  ASSERT_TRUE(write("mine"));
  EXPECT_EQ(read(), "mine");
  writeFile(path, "MRMENC1 damaged");
  EXPECT_FALSE(write("would lose the name of a key"));
  EXPECT_EQ(contentsOf(path), "MRMENC1 damaged");
}

TEST_F(SecureLocalFileTest, SealsLegacyPlainTextOnce) {
  const auto first = folder.path() / "first.txt";
  const auto second = folder.path() / "second.txt";
  writeFile(second, "old plain words");
  SecureLocalFile migrating(files, keys, path, {first, second});
  EXPECT_EQ(read(migrating), "old plain words");
  EXPECT_FALSE(std::filesystem::exists(second));
  EXPECT_EQ(read(migrating), "old plain words");
  // A crash after the sealing leaves an identical plain file: it goes. Another text is not ours to delete.
  writeFile(second, "old plain words");
  writeFile(first, "written since by an earlier version");
  EXPECT_EQ(read(migrating), "old plain words");
  EXPECT_FALSE(std::filesystem::exists(second));
  EXPECT_TRUE(std::filesystem::exists(first));
  ASSERT_TRUE(migrating.deleteCryptographically());
  EXPECT_FALSE(std::filesystem::exists(first));
}

TEST_F(SecureLocalFileTest, AFailureAtAnyStepOfAWriteKeepsTheOldFileAndItsKey) {
  ASSERT_TRUE(write("old"));
  // The first successful walk counts the steps; each of them fails once with each reason.
  files.before({});
  ASSERT_TRUE(write("old"));
  const int steps = files.steps();
  ASSERT_GT(steps, 12);
  for (const int error : {ENOSPC, EROFS, EACCES, EIO}) {
    for (int failing = 0; failing < steps; ++failing) {
      ASSERT_TRUE(write("old"));
      const auto before = contentsOf(path);
      std::string failed;
      files.before([&](int index, std::string_view name) -> std::optional<int> {
        if (index != failing) return std::nullopt;
        failed = name;
        return error;
      });
      const bool written = write("new").has_value();
      files.failNever();
      SCOPED_TRACE(failed + " as step " + std::to_string(failing) + ", error " + std::to_string(error));
      // Nobody knows which of them the disk holds when it refuses at the very end: then both keys stay.
      const bool isInPlace = failed == "synchronizeFolder" && !written && contentsOf(path) != before;
      if (isInPlace) {
        EXPECT_EQ(secrets.accounts(service).size(), 2U);
      }
      EXPECT_EQ(read(), written || isInPlace ? "new" : "old");
      expectTidy();
    }
  }
}

TEST_F(SecureLocalFileTest, TheBytesAreOnTheDiskBeforeTheNameIsTheirs) {
  ASSERT_TRUE(write("old"));
  Strings calls;
  files.before([&](int, std::string_view call) -> std::optional<int> {
    if (call == "write" || call == "rename" || call.starts_with("synchronize")) calls.emplace_back(call);
    return std::nullopt;
  });
  ASSERT_TRUE(write("new"));
  const auto written = std::ranges::find(calls, "synchronize");
  EXPECT_EQ(std::ranges::count(written, calls.end(), "write"), 0);
  EXPECT_EQ(Strings(written, calls.end()), (Strings{"synchronize", "rename", "synchronizeFolder"}));
}

TEST_F(SecureLocalFileTest, AnUpdateChangesWhatIsInTheFileAndNothingElse) {
  const auto appending = [](std::string_view more) {
    return [more](const std::optional<SecretBytes>& content) -> SecureResult<std::optional<SecretBytes>> {
      return SecretBytes(bytesOf((content ? textOf(content->reveal()) : "(none)") + std::string(more)));
    };
  };
  ASSERT_TRUE(file.update(appending(" one")));
  KeychainEncryptionKeyStore otherKeys(secrets, service);
  ASSERT_TRUE(SecureLocalFile(files, otherKeys, path).update(appending(" two")));
  ASSERT_TRUE(file.update(appending(" three")));
  EXPECT_EQ(read(), "(none) one two three");
  expectTidy();

  const auto before = contentsOf(path);
  ASSERT_TRUE(
      file.update([](const auto&) { return SecureResult<std::optional<SecretBytes>>(std::nullopt); }));
  EXPECT_EQ(contentsOf(path), before) << "left alone";
  const auto refuse =
      [](const std::optional<SecretBytes>& content) -> SecureResult<std::optional<SecretBytes>> {
    if (content) return std::unexpected(SecureLocalStorageError(Case::unreadableContent));
    return SecretBytes(bytesOf("fresh"));
  };
  EXPECT_EQ(file.update(refuse).error().which(), Case::unreadableContent);
  EXPECT_EQ(contentsOf(path), before);
  ASSERT_TRUE(file.update(refuse, SecureLocalFile::OnDamage::setAside));
  EXPECT_EQ(read(), "fresh");
  EXPECT_EQ(contentsOf(path.string() + ".damaged"), before);
  ASSERT_TRUE(
      file.update([](const auto&) { return SecureResult<std::optional<SecretBytes>>(SecretBytes()); }));
  EXPECT_EQ(read(), "(nothing)");
  EXPECT_EQ(secrets.accounts(service), Strings{}) << "deleted, with the copy that was set aside";
}

TEST_F(SecureLocalFileTest, EveryEditionReadsAndTakesOverWhatAnotherHasWritten) {
  const std::string services[] = {service + ".development", service + ".lite", service + ".complete"};
  std::string words;
  for (const auto& own : services) {
    Strings others;
    for (const auto& other : services) {
      if (other != own) others.push_back(other);
    }
    KeychainEncryptionKeyStore edition(secrets, own, others);
    SecureLocalFile shared(files, edition, path);
    EXPECT_EQ(read(shared), words.empty() ? "(nothing)" : words);
    words += "from " + own;
    ASSERT_TRUE(shared.write(bytesOf(words)));
    for (const auto& each : services) EXPECT_EQ(secrets.accounts(each).size(), each == own ? 1U : 0U);
  }
}

TEST_F(SecureLocalFileTest, WithoutAKeyStoreNothingGrowsAndNothingIsHeldUp) {
  ASSERT_TRUE(write("old"));
  secrets.failWith(secretStatus::serviceUnavailable);
  for (int dictation = 0; dictation < 100; ++dictation) EXPECT_FALSE(write("new"));
  EXPECT_EQ(namesIn(path.parent_path()), (std::set<std::string>{"test.sealed", "test.sealed.lock"}));
  secrets.failWith(std::nullopt);
  // What an earlier version let grow.
  std::string grown;
  for (int line = 0; line < 40'000; ++line) grown += "00000000-0000-0000-0000-000000000000\n";
  writeFile(path.string() + ".pending", grown);
  const int calls = secrets.calls();
  ASSERT_TRUE(write("new"));
  EXPECT_LT(secrets.calls() - calls, 10);
  EXPECT_EQ(read(), "new");
  expectTidy();
}

TEST_F(SecureLocalFileTest, AKeyStoreThatFailsKeepsTheOldFileAndNoFurtherKey) {
  for (const bool addsAllTheSame : {false, true}) {
    for (int call = 0; call < 3; ++call) {
      ASSERT_TRUE(write("old"));
      secrets.failOnce(call, secretStatus::serviceUnavailable, addsAllTheSame);
      const bool written = write("new").has_value();
      SCOPED_TRACE(call);
      EXPECT_EQ(written, call == 2) << "only the deletion of the old key may fail unnoticed";
      EXPECT_EQ(read(), written ? "new" : "old");
      expectTidy();
    }
  }
  ASSERT_TRUE(write("old"));
  secrets.setLocked(true);
  EXPECT_EQ(write("new").error(), SecureLocalStorageError::keychain(secretStatus::interactionNotAllowed));
  EXPECT_EQ(readError(), Case::keychain);
  secrets.setLocked(false);
  EXPECT_EQ(read(), "old");
  expectTidy();
}

TEST_F(SecureLocalFileTest, AWriterThatReplacedTheFileAndThenFailedKeepsTheNewKey) {
  ASSERT_TRUE(write("old"));
  SecureLocalFile odd(files, keys, path, {}, {}, [&](auto bytes, const auto& target, const auto& prepare) {
    (void)replaceFile(files, target, bytes, prepare);
    return FileResult<void>(std::unexpected(EIO));
  });
  EXPECT_FALSE(odd.write(bytesOf("new")));
  EXPECT_EQ(read(), "new");
  expectTidy();
}

TEST_F(SecureLocalFileTest, AFileThatShrinksWhileItIsReadIsAnErrorOfTheMoment) {
  ASSERT_TRUE(write("whole"));
  files.before([&](int, std::string_view call) -> std::optional<int> {
    if (call == "read") std::filesystem::resize_file(path, 20);
    return std::nullopt;
  });
  EXPECT_EQ(file.read().error(), SecureLocalStorageError::file(EIO));
}

TEST_F(SecureLocalFileTest, ADeletionThatFailsHalfWayIsFinishedLater) {
  ASSERT_TRUE(write("gone soon"));
  secrets.failWith(secretStatus::serviceUnavailable);
  EXPECT_FALSE(file.deleteCryptographically());
  secrets.failWith(std::nullopt);
  EXPECT_EQ(read(), "gone soon") << "nothing had happened yet";
  files.before([&](int, std::string_view call) -> std::optional<int> {
    if (call == "remove") return EACCES;
    return std::nullopt;
  });
  EXPECT_FALSE(file.deleteCryptographically());
  EXPECT_FALSE(write("must not be erased later"));
  files.failNever();
  EXPECT_EQ(secrets.accounts(service), Strings{});
  EXPECT_EQ(read(), "(nothing)");
  EXPECT_FALSE(std::filesystem::exists(path));
  ASSERT_TRUE(write("new life"));
  EXPECT_EQ(read(), "new life");
  expectTidy();
}

TEST_F(SecureLocalFileTest, DeletionTakesCopiesThatWereSetAsideAndDamagedFiles) {
  ASSERT_TRUE(write("first"));
  std::filesystem::rename(path, path.string() + ".damaged");
  ASSERT_TRUE(write("second"));
  EXPECT_EQ(secrets.accounts(service).size(), 2U);
  ASSERT_TRUE(file.deleteCryptographically());
  EXPECT_EQ(secrets.accounts(service), Strings{});
  writeFile(path, "MRMENC1{");
  EXPECT_EQ(file.deleteCryptographically().error(), SecureLocalStorageError(Case::invalidEnvelope));
  EXPECT_FALSE(std::filesystem::exists(path));
  EXPECT_EQ(read(), "(nothing)");
}

TEST_F(SecureLocalFileTest, AReaderLeavesALiveWritersFilesAlone) {
  ASSERT_TRUE(write("old"));
  // Another process reads at every step of our write; it must neither fail nor tidy up under our hands.
  FakeSecretStore& shared = secrets;
  StepFileSystem otherFiles;
  KeychainEncryptionKeyStore otherKeys(shared, service);
  SecureLocalFile other(otherFiles, otherKeys, path);
  files.before([&](int, std::string_view) -> std::optional<int> {
    const auto seen = read(other);
    EXPECT_TRUE(seen == "old" || seen == "new") << seen;
    return std::nullopt;
  });
  ASSERT_TRUE(write("new"));
  files.failNever();
  EXPECT_EQ(read(), "new");
  expectTidy();
}

TEST_F(SecureLocalFileTest, AReaderFollowsAWriterThatExchangesFileAndKeyUnderIt) {
  /// Another process writes between our look at the file and our look for its key.
  class Interrupted final : public LocalEncryptionKeyStore {
   public:
    Interrupted(LocalEncryptionKeyStore& store, SecureLocalFile& writer) : store_(store), writer_(writer) {}
    SecureResult<NamedKey> createKey(const Announce& announce) override { return store_.createKey(announce); }
    SecureResult<std::optional<SecretBytes>> key(const std::string& identifier) override {
      if (writes-- > 0) (void)writer_.write(bytesOf("newer words"));
      return store_.key(identifier);
    }
    SecureResult<void> deleteKey(const std::string& identifier) override {
      return store_.deleteKey(identifier);
    }
    int writes = 2;

   private:
    LocalEncryptionKeyStore& store_;
    SecureLocalFile& writer_;
  };
  ASSERT_TRUE(write("old words"));
  Interrupted interrupted(keys, file);
  SecureLocalFile reader(files, interrupted, path);
  EXPECT_EQ(read(reader), "newer words");
}
