#include "Integration/ModelDownloader/ModelHost.h"

#include "Foundation/Crypto/Crypto.h"
#include "Support/BuildPaths.h"

#include <fstream>
#include <memory>
#include <random>
#include <sstream>
#include <stdexcept>

#include <unistd.h>

namespace murmel::test {

ModelHost::ModelHost() : process_({sourceFolder() + "/Tests/Support/model-host", folder_.path().string()}) {
  const std::unique_ptr<FILE, int (*)(FILE*)> lines(::fdopen(::dup(process_.output()), "r"), &std::fclose);
  char certificate[256];
  if (std::fscanf(lines.get(), "%d %255s", &port_, certificate) != 2)
    throw std::runtime_error("the model host did not come up");
  certificate_ = certificate;
}

ModelHost::~ModelHost() {
  process_.closeInput();
  process_.end(0);
}

HostedFile ModelHost::add(const std::string& identifier, std::int64_t bytes, unsigned seed,
                          const std::string& folder) {
  std::mt19937 generator(seed);
  std::string content(static_cast<std::size_t>(bytes), '\0');
  for (char& byte : content) byte = static_cast<char>(generator());
  HostedFile file{identifier, {}, bytes, folder, "file-" + identifier};
  const auto* data = reinterpret_cast<const std::uint8_t*>(content.data());
  file.sha256 = crypto::hexadecimal(crypto::sha256({data, content.size()}));
  std::ofstream(folder_.path() / file.file, std::ios::binary) << content;
  return file;
}

void ModelHost::addFile(const std::string& name, const std::string& content) const {
  std::ofstream(folder_.path() / name, std::ios::binary) << content;
}

std::string ModelHost::address(const std::string& name, const std::string& actions) const {
  return "https://localhost:" + std::to_string(port_) + "/" + name + ":" + actions + "/";
}

HostStatistics ModelHost::statistics(const std::string& name, const std::string& actions,
                                     const HostedFile& file) const {
  const auto command = "curl -s --noproxy '*' --cacert " + certificate_ +
                       " https://localhost:" + std::to_string(port_) + "/stats/" + name + ":" + actions;
  FILE* answer = ::popen(command.c_str(), "r");
  char line[512];
  HostStatistics result;
  while (std::fgets(line, sizeof line, answer) != nullptr) {
    std::istringstream words(line);
    std::string which;
    HostStatistics counted;
    if (words >> which >> counted.requests >> counted.bytes && which == file.file) result = counted;
  }
  ::pclose(answer);
  return result;
}

std::string ModelHost::content(const HostedFile& file) const {
  return contentsOf(folder_.path() / file.file);
}

}  // namespace murmel::test
