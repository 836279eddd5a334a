#include "Workers/SageWorker/OnnxRuntime.h"

#include "Workers/SageWorker/OnnxFunctions.h"

#include <optional>
#include <utility>

#include <dlfcn.h>

namespace murmel::worker {

namespace {

/// An object of the library, released with its owner.
template <class Object>
class Owned {
 public:
  explicit Owned(const OnnxFunctions& functions) : functions_(&functions) {}
  Owned(Owned&& other) noexcept
      : functions_(other.functions_), object_(std::exchange(other.object_, nullptr)) {}
  Owned& operator=(Owned&&) = delete;
  ~Owned() {
    if (object_ != nullptr) functions_->release(object_);
  }
  [[nodiscard]] Object* get() const { return object_; }
  /// Where a function of the library puts it.
  [[nodiscard]] Object** place() { return &object_; }

 private:
  const OnnxFunctions* functions_;
  Object* object_ = nullptr;
};

/// Whether a call went well. What the library says otherwise may quote the input, and is dropped.
bool succeeded(const OnnxFunctions& functions, OrtStatus* status) {
  if (status == nullptr) return true;
  functions.release(status);
  return false;
}

class Session final : public OnnxSession {
 public:
  Session(const OnnxFunctions& functions, const OrtMemoryInfo* memory, Owned<OrtSession> session)
      : functions_(functions), memory_(memory), session_(std::move(session)) {}

  bool readNames() {
    std::size_t inputs = 0;
    std::size_t outputs = 0;
    OrtAllocator* allocator = nullptr;
    if (!succeeded(functions_, functions_.defaultAllocator(&allocator)) ||
        !succeeded(functions_, functions_.inputCount(session_.get(), &inputs)) ||
        !succeeded(functions_, functions_.outputCount(session_.get(), &outputs))) {
      return false;
    }
    const auto append = [&](std::vector<std::string>& names, OrtStatus* status, char* name) {
      if (!succeeded(functions_, status)) return false;
      names.emplace_back(name);
      return succeeded(functions_, functions_.free(allocator, name));
    };
    for (std::size_t index = 0; index < inputs; ++index) {
      char* name = nullptr;
      auto* const status = functions_.inputName(session_.get(), index, allocator, &name);
      if (!append(inputNames_, status, name)) return false;
    }
    for (std::size_t index = 0; index < outputs; ++index) {
      char* name = nullptr;
      auto* const status = functions_.outputName(session_.get(), index, allocator, &name);
      if (!append(outputNames_, status, name)) return false;
    }
    return true;
  }

  [[nodiscard]] const std::vector<std::string>& inputNames() const override { return inputNames_; }
  [[nodiscard]] const std::vector<std::string>& outputNames() const override { return outputNames_; }

  std::expected<OnnxOutput, std::string> run(std::span<const OnnxInput> inputs,
                                             const char* outputName) override {
    const std::unexpected<std::string> failed("model failed");
    std::vector<Owned<OrtValue>> tensors;
    std::vector<const OrtValue*> values;
    std::vector<const char*> names;
    for (const auto& input : inputs) {
      tensors.emplace_back(functions_);
      if (!fill(tensors.back(), input)) return failed;
      values.push_back(tensors.back().get());
      names.push_back(input.name);
    }
    auto output = std::make_shared<Owned<OrtValue>>(functions_);
    if (!succeeded(functions_, functions_.run(session_.get(), names.data(), values.data(), values.size(),
                                              &outputName, 1, output->place()))) {
      return failed;
    }
    auto described = describe(std::move(output));
    if (!described) return failed;
    return *std::move(described);
  }

 private:
  bool fill(Owned<OrtValue>& tensor, const OnnxInput& input) const {
    const auto create = [&](const auto& data, OnnxFunctions::ElementType type) {
      // The library takes a pointer that it may write through, and does not write to inputs.
      auto* const memory = const_cast<void*>(static_cast<const void*>(data.data()));
      return functions_.createTensor(memory_, memory, data.size_bytes(), input.shape.data(),
                                     input.shape.size(), type, tensor.place());
    };
    const auto* const numbers = std::get_if<std::span<const std::int64_t>>(&input.data);
    return succeeded(functions_, numbers != nullptr ? create(*numbers, OnnxFunctions::ElementType::int64)
                                                    : create(std::get<std::span<const float>>(input.data),
                                                             OnnxFunctions::ElementType::float32));
  }

  [[nodiscard]] std::optional<OnnxOutput> describe(std::shared_ptr<Owned<OrtValue>> value) const {
    Owned<OrtTensorTypeAndShapeInfo> info(functions_);
    int type = 0;
    std::size_t count = 0;
    if (!succeeded(functions_, functions_.typeAndShape(value->get(), info.place())) ||
        !succeeded(functions_, functions_.elementType(info.get(), &type)) ||
        type != static_cast<int>(OnnxFunctions::ElementType::float32) ||
        !succeeded(functions_, functions_.dimensionCount(info.get(), &count))) {
      return std::nullopt;
    }
    OnnxOutput output;
    output.shape.resize(count);
    void* data = nullptr;
    if (!succeeded(functions_, functions_.dimensions(info.get(), output.shape.data(), count)) ||
        !succeeded(functions_, functions_.tensorData(value->get(), &data))) {
      return std::nullopt;
    }
    std::size_t size = 1;
    for (const auto dimension : output.shape) size *= static_cast<std::size_t>(dimension);
    output.data = {static_cast<const float*>(data), size};
    output.owner = std::move(value);
    return output;
  }

  const OnnxFunctions& functions_;
  const OrtMemoryInfo* memory_;
  Owned<OrtSession> session_;
  std::vector<std::string> inputNames_;
  std::vector<std::string> outputNames_;
};

class Runtime final : public OnnxRuntime {
 public:
  // The library stays loaded: it has threads and exit handlers of its own.
  explicit Runtime(OnnxFunctions functions)
      : functions_(functions), environment_(functions_), memory_(functions_), options_(functions_) {}

  bool begin() {
    // One thread: the sentences are short, and idle threads of the library would spin.
    constexpr int threads = 1;
    return succeeded(functions_,
                     functions_.createEnv(OnnxFunctions::logFatalOnly, "murmel", environment_.place())) &&
           succeeded(functions_,
                     functions_.createCpuMemoryInfo(OnnxFunctions::deviceAllocator,
                                                    OnnxFunctions::defaultMemory, memory_.place())) &&
           succeeded(functions_, functions_.createSessionOptions(options_.place())) &&
           succeeded(functions_, functions_.setIntraOpThreadCount(options_.get(), threads)) &&
           succeeded(functions_, functions_.setInterOpThreadCount(options_.get(), threads));
  }

  std::expected<std::unique_ptr<OnnxSession>, std::string> makeSession(
      std::span<const std::byte> model) override {
    Owned<OrtSession> session(functions_);
    if (!succeeded(functions_,
                   functions_.createSessionFromArray(environment_.get(), model.data(), model.size(),
                                                     options_.get(), session.place()))) {
      return std::unexpected("model could not be loaded");
    }
    auto result = std::make_unique<Session>(functions_, memory_.get(), std::move(session));
    if (!result->readNames()) return std::unexpected("model could not be loaded");
    return result;
  }

 private:
  const OnnxFunctions functions_;
  Owned<OrtEnv> environment_;
  Owned<OrtMemoryInfo> memory_;
  Owned<OrtSessionOptions> options_;
};

}  // namespace

std::expected<std::unique_ptr<OnnxRuntime>, std::string> OnnxRuntime::load(
    const std::filesystem::path& library) {
  const std::unexpected<std::string> missing("inference runtime could not be loaded");
  void* const handle = ::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (handle == nullptr) return missing;
  using GetBase = const OrtApiBase*();
  auto* const getBase = reinterpret_cast<GetBase*>(::dlsym(handle, "OrtGetApiBase"));
  if (getBase == nullptr) return missing;
  constexpr std::uint32_t firstVersion = 1;
  const auto* const table = getBase()->getApi(firstVersion);
  if (table == nullptr) return missing;
  auto runtime = std::make_unique<Runtime>(OnnxFunctions(table));
  if (!runtime->begin()) return missing;
  return runtime;
}

}  // namespace murmel::worker
