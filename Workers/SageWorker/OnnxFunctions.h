#pragma once

#include <cstddef>
#include <cstdint>

namespace murmel::worker {

// Types of the library, of which only pointers are ever seen.
struct OrtStatus;
struct OrtEnv;
struct OrtSession;
struct OrtSessionOptions;
struct OrtRunOptions;
struct OrtValue;
struct OrtMemoryInfo;
struct OrtAllocator;
struct OrtTensorTypeAndShapeInfo;

/// What the library's one exported function gives: its first version's table is the beginning of every later
/// one.
struct OrtApiBase {
  const void* const* (*getApi)(std::uint32_t version);
  const char* (*getVersionString)();
};

/// The functions of the library that are used, with their places in its table. A function that can fail gives
/// a status, null when it went well, which the caller releases.
class OnnxFunctions {
 public:
  explicit OnnxFunctions(const void* const* table) : table_(table) {}

  static constexpr int logFatalOnly = 4;
  static constexpr int deviceAllocator = 0;
  static constexpr int defaultMemory = 0;
  enum class ElementType : int { float32 = 1, int64 = 7 };

  OrtStatus* createEnv(int logLevel, const char* name, OrtEnv** result) const {
    return at<OrtStatus*(int, const char*, OrtEnv**)>(3)(logLevel, name, result);
  }
  OrtStatus* createSessionFromArray(const OrtEnv* environment, const void* data, std::size_t size,
                                    const OrtSessionOptions* options, OrtSession** result) const {
    return at<OrtStatus*(const OrtEnv*, const void*, std::size_t, const OrtSessionOptions*, OrtSession**)>(8)(
        environment, data, size, options, result);
  }
  OrtStatus* run(OrtSession* session, const char* const* inputNames, const OrtValue* const* inputs,
                 std::size_t inputCount, const char* const* outputNames, std::size_t outputCount,
                 OrtValue** outputs) const {
    return at<OrtStatus*(OrtSession*, const OrtRunOptions*, const char* const*, const OrtValue* const*,
                         std::size_t, const char* const*, std::size_t, OrtValue**)>(9)(
        session, nullptr, inputNames, inputs, inputCount, outputNames, outputCount, outputs);
  }
  OrtStatus* createSessionOptions(OrtSessionOptions** result) const {
    return at<OrtStatus*(OrtSessionOptions**)>(10)(result);
  }
  OrtStatus* setIntraOpThreadCount(OrtSessionOptions* options, int count) const {
    return at<OrtStatus*(OrtSessionOptions*, int)>(24)(options, count);
  }
  OrtStatus* setInterOpThreadCount(OrtSessionOptions* options, int count) const {
    return at<OrtStatus*(OrtSessionOptions*, int)>(25)(options, count);
  }
  OrtStatus* inputCount(const OrtSession* session, std::size_t* result) const {
    return at<OrtStatus*(const OrtSession*, std::size_t*)>(30)(session, result);
  }
  OrtStatus* outputCount(const OrtSession* session, std::size_t* result) const {
    return at<OrtStatus*(const OrtSession*, std::size_t*)>(31)(session, result);
  }
  OrtStatus* inputName(const OrtSession* session, std::size_t index, OrtAllocator* allocator,
                       char** result) const {
    return at<OrtStatus*(const OrtSession*, std::size_t, OrtAllocator*, char**)>(36)(session, index,
                                                                                     allocator, result);
  }
  OrtStatus* outputName(const OrtSession* session, std::size_t index, OrtAllocator* allocator,
                        char** result) const {
    return at<OrtStatus*(const OrtSession*, std::size_t, OrtAllocator*, char**)>(37)(session, index,
                                                                                     allocator, result);
  }
  /// The tensor refers to `data`, which must outlive it.
  OrtStatus* createTensor(const OrtMemoryInfo* memory, void* data, std::size_t size,
                          const std::int64_t* shape, std::size_t dimensions, ElementType type,
                          OrtValue** result) const {
    return at<OrtStatus*(const OrtMemoryInfo*, void*, std::size_t, const std::int64_t*, std::size_t, int,
                         OrtValue**)>(49)(memory, data, size, shape, dimensions, static_cast<int>(type),
                                          result);
  }
  OrtStatus* tensorData(OrtValue* value, void** result) const {
    return at<OrtStatus*(OrtValue*, void**)>(51)(value, result);
  }
  OrtStatus* elementType(const OrtTensorTypeAndShapeInfo* info, int* result) const {
    return at<OrtStatus*(const OrtTensorTypeAndShapeInfo*, int*)>(60)(info, result);
  }
  OrtStatus* dimensionCount(const OrtTensorTypeAndShapeInfo* info, std::size_t* result) const {
    return at<OrtStatus*(const OrtTensorTypeAndShapeInfo*, std::size_t*)>(61)(info, result);
  }
  OrtStatus* dimensions(const OrtTensorTypeAndShapeInfo* info, std::int64_t* result,
                        std::size_t count) const {
    return at<OrtStatus*(const OrtTensorTypeAndShapeInfo*, std::int64_t*, std::size_t)>(62)(info, result,
                                                                                            count);
  }
  /// Fails for a value that is no tensor.
  OrtStatus* typeAndShape(const OrtValue* value, OrtTensorTypeAndShapeInfo** result) const {
    return at<OrtStatus*(const OrtValue*, OrtTensorTypeAndShapeInfo**)>(65)(value, result);
  }
  OrtStatus* createCpuMemoryInfo(int allocator, int memory, OrtMemoryInfo** result) const {
    return at<OrtStatus*(int, int, OrtMemoryInfo**)>(69)(allocator, memory, result);
  }
  OrtStatus* free(OrtAllocator* allocator, void* memory) const {
    return at<OrtStatus*(OrtAllocator*, void*)>(76)(allocator, memory);
  }
  /// The library's own; not released.
  OrtStatus* defaultAllocator(OrtAllocator** result) const {
    return at<OrtStatus*(OrtAllocator**)>(78)(result);
  }

  void release(OrtEnv* object) const { at<void(OrtEnv*)>(92)(object); }
  void release(OrtStatus* object) const { at<void(OrtStatus*)>(93)(object); }
  void release(OrtMemoryInfo* object) const { at<void(OrtMemoryInfo*)>(94)(object); }
  void release(OrtSession* object) const { at<void(OrtSession*)>(95)(object); }
  void release(OrtValue* object) const { at<void(OrtValue*)>(96)(object); }
  void release(OrtTensorTypeAndShapeInfo* object) const { at<void(OrtTensorTypeAndShapeInfo*)>(99)(object); }
  void release(OrtSessionOptions* object) const { at<void(OrtSessionOptions*)>(100)(object); }

 private:
  template <class Function>
  [[nodiscard]] Function* at(std::size_t place) const {
    return reinterpret_cast<Function*>(const_cast<void*>(table_[place]));
  }

  const void* const* table_;
};

}  // namespace murmel::worker
