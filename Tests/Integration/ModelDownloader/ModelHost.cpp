#include "Integration/ModelDownloader/ModelHost.h"

#include "Foundation/Crypto/Crypto.h"
#include "Support/BuildPaths.h"
#include "Support/ShellCommand.h"

#include <fstream>
#include <random>
#include <sstream>
#include <stdexcept>

namespace murmel::test {

ModelHost::ModelHost() : process_({sourceFolder() + "/Tests/Support/model-host", folder_.path().string()}) {
  std::istringstream line(process_.line());
  if (!(line >> port_ >> certificate_)) throw std::runtime_error("the model host did not come up");
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
  std::istringstream words(outputOf(command));
  HostStatistics counted;
  for (std::string which; words >> which >> counted.requests >> counted.bytes;) {
    if (which == file.file) return counted;
  }
  return {};
}

std::string ModelHost::content(const HostedFile& file) const {
  return contentsOf(folder_.path() / file.file);
}

}  // namespace murmel::test
