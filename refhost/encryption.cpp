// The simulated string encryption of the host.
#include "refhost/encryption.h"

#include <algorithm>

#include "host/printer.h"

namespace refhost {

void Encryption::setPair(std::string plain, std::string cipher) {
  pairs_.emplace(pairs_.begin(), std::move(plain), std::move(cipher));
}

std::string Encryption::encrypt(const std::string& plain) {
  requests_.push_back({Direction::kEncrypt, plain});
  const auto pair = std::find_if(pairs_.begin(), pairs_.end(),
                                 [&plain](const auto& p) { return p.first == plain; });
  return pair == pairs_.end() ? plain : pair->second;
}

std::string Encryption::decrypt(const std::string& cipher) {
  requests_.push_back({Direction::kDecrypt, cipher});
  const auto pair = std::find_if(pairs_.begin(), pairs_.end(),
                                 [&cipher](const auto& p) { return p.second == cipher; });
  return pair == pairs_.end() ? cipher : pair->first;
}

Encryption& encryption() {
  static Encryption table;
  return table;
}

}  // namespace refhost

namespace Loom {

string Encrypt(const string& plain) {
  const std::string cipher = refhost::encryption().encrypt(std::string(plain));
  return string(cipher.begin(), cipher.end());
}

string Decrypt(const string& cipher) {
  const std::string plain = refhost::encryption().decrypt(std::string(cipher));
  return string(plain.begin(), plain.end());
}

}  // namespace Loom
