// SHA-256, by libcrypto.
#pragma once

#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace vessant {

class Sha256 {
 public:
  Sha256();
  void add(std::string_view bytes);
  /// The sum in small hexadecimal digits. Nothing can be added behind it.
  [[nodiscard]] std::string finish();

 private:
  struct Closer {
    void operator()(evp_md_ctx_st* context) const;
  };

  std::unique_ptr<evp_md_ctx_st, Closer> context_;
};

}  // namespace vessant
