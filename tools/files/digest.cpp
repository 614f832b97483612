#include "tools/files/digest.h"

#include <fmt/format.h>
#include <openssl/evp.h>

#include <array>
#include <cerrno>
#include <fstream>
#include <stdexcept>

#include "tools/files/file_kind.h"
#include "tools/messages/tool_error.h"

struct Digest::State {
  struct Free {
    void operator()(EVP_MD_CTX* made) const { ::EVP_MD_CTX_free(made); }
  };
  std::unique_ptr<EVP_MD_CTX, Free> context{::EVP_MD_CTX_new()};
};

Digest::Digest() : state_(std::make_unique<State>()) {
  if (state_->context == nullptr || ::EVP_DigestInit_ex(state_->context.get(), ::EVP_sha256(), nullptr) != 1)
    throw std::runtime_error("the cryptographic library gives no SHA-256");
}

Digest::~Digest() = default;

void Digest::add(std::string_view bytes) {
  if (::EVP_DigestUpdate(state_->context.get(), bytes.data(), bytes.size()) != 1)
    throw std::runtime_error("the cryptographic library failed");
}

std::string Digest::text() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> bytes = {};
  unsigned int size = 0;
  if (::EVP_DigestFinal_ex(state_->context.get(), bytes.data(), &size) != 1)
    throw std::runtime_error("the cryptographic library failed");
  std::string text;
  for (unsigned int i = 0; i < size; ++i) text += fmt::format("{:02x}", bytes[i]);
  return text;
}

std::string kept_digest(const std::string& path) {
  errno = 0;
  std::ifstream file(path);
  if (!file) throw system_error(path, "open", errno);
  std::string line;
  std::getline(file, line);
  if (kind_of_file(path) != FileKind::digest)
    throw ToolError(ExitCode::cannot_open, fmt::format("{}: holds no digest", path));
  return line.substr(0, 64);
}
