// usage: mrm-release-sign FOLDER [EXECUTABLE]     FOLDER: lib/murmel of an install tree
// Writes the signed manifests of all workers and of everything below Runtime, each beside its file, and that
// of the application's EXECUTABLE into FOLDER. MURMEL_SIGNING_KEY names the release key, an Ed25519 key in
// PEM. Without one the key is one that everybody can make: such manifests guard against damage and mixed
// versions, not against people.

#include "Foundation/Crypto/Crypto.h"
#include "Platform/Linux/Process/SignedExecutableManifest.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace {

using namespace murmel;
namespace fs = std::filesystem;

std::optional<ed25519::SigningKey> signingKey() {
  const char* const file = std::getenv("MURMEL_SIGNING_KEY");
  if (file == nullptr || *file == '\0') {
    constexpr std::string_view everybodys = "Murmel without a release key";
    return ed25519::SigningKey::fromSeed(
        crypto::sha256({reinterpret_cast<const std::uint8_t*>(everybodys.data()), everybodys.size()}));
  }
  std::ifstream stream(file, std::ios::binary);
  return ed25519::SigningKey::fromPEM({std::istreambuf_iterator<char>(stream), {}});
}

/// What is covered below a folder, in an order that does not depend on the disk.
std::vector<fs::path> covered(const fs::path& folder) {
  std::vector<fs::path> files;
  for (const char* part : {"Workers", "Runtime"}) {
    std::error_code missing;
    for (const auto& entry : fs::recursive_directory_iterator(folder / part, missing))
      if (entry.is_regular_file() && entry.path().extension() != ".manifest") files.push_back(entry.path());
  }
  std::ranges::sort(files);
  return files;
}

bool isSigned(const fs::path& file, const fs::path& manifest, const ed25519::SigningKey& key) {
  constexpr mode_t readable = 0644;
  if (SignedExecutableManifest::sign(file, manifest, key) && ::chmod(manifest.c_str(), readable) == 0)
    return true;
  std::fprintf(stderr, "mrm-release-sign: %s cannot be signed\n", file.c_str());
  return false;
}

}  // namespace

int main(int count, char** arguments) {
  constexpr int withExecutable = 3;
  if (count < 2 || count > withExecutable) {
    std::fputs("usage: mrm-release-sign FOLDER [EXECUTABLE]\n", stderr);
    return EXIT_FAILURE;
  }
  const auto key = signingKey();
  if (!key) {
    std::fputs("mrm-release-sign: MURMEL_SIGNING_KEY names no Ed25519 key in PEM\n", stderr);
    return EXIT_FAILURE;
  }
  const fs::path folder = arguments[1];
  const auto files = covered(folder);
  bool isDone = !files.empty();
  for (const auto& file : files)
    isDone = isSigned(file, SignedExecutableManifest::manifestOf(file), *key) && isDone;
  if (count == withExecutable) isDone = isSigned(arguments[2], folder / "murmel.manifest", *key) && isDone;
  std::printf("%s\n", SignedExecutableManifest::team(key->publicKey()).c_str());
  return isDone ? EXIT_SUCCESS : EXIT_FAILURE;
}
