#include "packer/Sha256.h"

#include <openssl/evp.h>

#include "packer/Text.h"

namespace vessant {
namespace {

void require(int result) {
  if (result != 1) throw failure("SHA-256 is not available here");
}

}  // namespace

void Sha256::Closer::operator()(evp_md_ctx_st* context) const {
  EVP_MD_CTX_free(context);
}

Sha256::Sha256() : context_(EVP_MD_CTX_new()) {
  require(context_ == nullptr ? 0 : EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr));
}

void Sha256::add(std::string_view bytes) {
  require(EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()));
}

std::string Sha256::finish() {
  constexpr const char* kDigits = "0123456789abcdef";
  unsigned char sum[EVP_MAX_MD_SIZE];
  unsigned length = 0;
  require(EVP_DigestFinal_ex(context_.get(), sum, &length));
  std::string text;
  for (unsigned i = 0; i < length; ++i) text += {kDigits[sum[i] >> 4U], kDigits[sum[i] & 0xFU]};
  return text;
}

}  // namespace vessant
