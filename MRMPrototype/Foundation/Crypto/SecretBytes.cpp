#include "Foundation/Crypto/SecretBytes.h"

#include <algorithm>
#include <new>
#include <utility>

#include <openssl/crypto.h>
#include <sys/mman.h>
#include <unistd.h>

namespace murmel {

namespace {

std::size_t roundedToPages(std::size_t size) {
  const auto page = static_cast<std::size_t>(::sysconf(_SC_PAGESIZE));
  return (size + page - 1) / page * page;
}

}  // namespace

SecretBytes::SecretBytes(std::size_t size) : size_(size), mapped_(roundedToPages(size)) {
  if (size == 0) return;
  void* memory = ::mmap(nullptr, mapped_, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED) throw std::bad_alloc();
  // Each of these is refused under some limit or on some kernel; the key is then less well kept, but usable.
  (void)::mlock(memory, mapped_);
  (void)::madvise(memory, mapped_, MADV_DONTDUMP);
  (void)::madvise(memory, mapped_, MADV_WIPEONFORK);
  data_ = static_cast<std::uint8_t*>(memory);
}

SecretBytes::SecretBytes(std::span<const std::uint8_t> bytes) : SecretBytes(bytes.size()) {
  std::ranges::copy(bytes, data_);
}

SecretBytes::SecretBytes(SecretBytes&& other) noexcept
    : data_(std::exchange(other.data_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      mapped_(std::exchange(other.mapped_, 0)) {}

SecretBytes& SecretBytes::operator=(SecretBytes&& other) noexcept {
  if (this != &other) {
    release();
    data_ = std::exchange(other.data_, nullptr);
    size_ = std::exchange(other.size_, 0);
    mapped_ = std::exchange(other.mapped_, 0);
  }
  return *this;
}

SecretBytes::~SecretBytes() {
  release();
}

SecretBytes SecretBytes::copy() const {
  return SecretBytes(reveal());
}

bool operator==(const SecretBytes& left, const SecretBytes& right) {
  return left.size_ == right.size_ &&
         (left.size_ == 0 || CRYPTO_memcmp(left.data_, right.data_, left.size_) == 0);
}

void SecretBytes::release() noexcept {
  if (!data_) return;
  OPENSSL_cleanse(data_, mapped_);
  ::munmap(data_, mapped_);
  data_ = nullptr;
}

}  // namespace murmel
