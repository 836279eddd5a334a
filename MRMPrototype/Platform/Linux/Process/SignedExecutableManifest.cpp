#include "Platform/Linux/Process/SignedExecutableManifest.h"

#include "Foundation/Crypto/Crypto.h"

#include <cstdint>
#include <fstream>
#include <span>
#include <string_view>
#include <vector>

namespace murmel {

namespace {

constexpr std::string_view suffix = ".manifest";
constexpr std::string_view header = "murmel-executable-manifest 1\n";
constexpr std::size_t largestManifest = 4'096;

std::span<const std::uint8_t> bytesOf(std::string_view text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::optional<std::string> hashOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  if (!stream) return std::nullopt;
  crypto::Sha256 hash;
  std::vector<char> buffer(std::size_t{256} * 1'024);
  while (stream) {
    stream.read(buffer.data(), static_cast<std::streamsize>(buffer.size()));
    hash.update(bytesOf({buffer.data(), static_cast<std::size_t>(stream.gcount())}));
  }
  if (stream.bad()) return std::nullopt;
  return crypto::hexadecimal(hash.finish());
}

std::optional<std::string> readManifest(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  std::string text(largestManifest + 1, '\0');
  stream.read(text.data(), static_cast<std::streamsize>(text.size()));
  if (!stream.eof()) return std::nullopt;  // not there, or too large
  text.resize(static_cast<std::size_t>(stream.gcount()));
  return text;
}

/// Everything that is signed.
std::string signedPart(std::string_view name, std::string_view sha256, std::string_view key) {
  return std::string(header)
      .append("name ")
      .append(name)
      .append("\nsha256 ")
      .append(sha256)
      .append("\nkey ")
      .append(key)
      .append("\n");
}

std::string signatureLine(std::string_view signature) {
  return std::string("signature ").append(signature).append("\n");
}

/// The value of a line of `text` that begins with `name` and a blank.
std::string_view valueOf(std::string_view text, std::string_view name) {
  const auto start = text.find("\n" + std::string(name) + " ");
  if (start == std::string_view::npos) return {};
  const auto value = text.substr(start + name.size() + 2);
  return value.substr(0, value.find('\n'));
}

}  // namespace

std::string SignedExecutableManifest::team(const ed25519::PublicKey& key) {
  return crypto::hexadecimal(crypto::sha256(key));
}

std::filesystem::path SignedExecutableManifest::manifestOf(const std::filesystem::path& executable) {
  auto path = executable;
  path += suffix;
  return path;
}

std::optional<std::string> SignedExecutableManifest::teamOf(const std::filesystem::path& executable) {
  return teamOf(executable, manifestOf(executable));
}

std::optional<std::string> SignedExecutableManifest::teamOf(const std::filesystem::path& executable,
                                                            const std::filesystem::path& manifest) {
  const auto text = readManifest(manifest);
  if (!text) return std::nullopt;
  const auto key = crypto::fromHexadecimal<ed25519::publicKeySize>(valueOf(*text, "key"));
  const auto signature = crypto::fromHexadecimal<ed25519::signatureSize>(valueOf(*text, "signature"));
  const auto hash = hashOf(executable);
  if (!key || !signature || !hash) return std::nullopt;
  // Written anew from what is there and compared: no second reading of the manifest can differ from the
  // first.
  const auto expected = signedPart(executable.filename().string(), *hash, crypto::hexadecimal(*key));
  if (*text != expected + signatureLine(crypto::hexadecimal(*signature))) return std::nullopt;
  if (!ed25519::verify(*key, bytesOf(expected), *signature)) return std::nullopt;
  return team(*key);
}

bool SignedExecutableManifest::sign(const std::filesystem::path& executable,
                                    const std::filesystem::path& manifest, const ed25519::SigningKey& key) {
  const auto hash = hashOf(executable);
  if (!hash) return false;
  const auto text = signedPart(executable.filename().string(), *hash, crypto::hexadecimal(key.publicKey()));
  std::ofstream stream(manifest, std::ios::binary | std::ios::trunc);
  stream << text << signatureLine(crypto::hexadecimal(key.sign(bytesOf(text))));
  stream.close();
  return !stream.fail();
}

}  // namespace murmel
