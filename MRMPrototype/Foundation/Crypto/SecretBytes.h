#pragma once

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <span>

namespace murmel {

/// Key material in memory of its own: locked where the system allows it, left out of core dumps and of forked
/// children, wiped when it goes. Nothing prints or logs this type. Move-only.
class SecretBytes {
 public:
  SecretBytes() = default;
  /// `size` zero bytes.
  explicit SecretBytes(std::size_t size);
  /// Copies; the caller wipes its own copy.
  explicit SecretBytes(std::span<const std::uint8_t> bytes);
  SecretBytes(SecretBytes&& other) noexcept;
  SecretBytes& operator=(SecretBytes&& other) noexcept;
  SecretBytes(const SecretBytes&) = delete;
  SecretBytes& operator=(const SecretBytes&) = delete;
  ~SecretBytes();

  [[nodiscard]] std::span<std::uint8_t> reveal() { return {data_, size_}; }
  [[nodiscard]] std::span<const std::uint8_t> reveal() const { return {data_, size_}; }
  [[nodiscard]] std::size_t size() const { return size_; }
  [[nodiscard]] bool empty() const { return size_ == 0; }
  [[nodiscard]] SecretBytes copy() const;

  /// Constant-time comparison.
  friend bool operator==(const SecretBytes& left, const SecretBytes& right);
  friend std::ostream& operator<<(std::ostream&, const SecretBytes&) = delete;

 private:
  void release() noexcept;

  std::uint8_t* data_ = nullptr;
  std::size_t size_ = 0;
  std::size_t mapped_ = 0;
};

}  // namespace murmel
