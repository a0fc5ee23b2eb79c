// The host's string encryption (Loom::Encrypt / Loom::Decrypt of host/printer.h),
// simulated by a table of pairs a test or scenario fills (`encryption "PLAIN" =
// "CIPHER"`): Encrypt gives the cipher of a known plain text and Decrypt the plain text of
// a known cipher; any other text comes back unchanged. reset() empties the table and the
// record of what the library asked.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace refhost {

class Encryption {
 public:
  enum class Direction { kEncrypt, kDecrypt };
  struct Request {
    Direction direction;
    std::string text;
  };

  void reset() { *this = Encryption(); }
  // Adds a pair; a plain text or cipher given again is answered by the later pair.
  void setPair(std::string plain, std::string cipher);

  std::string encrypt(const std::string& plain);
  std::string decrypt(const std::string& cipher);
  // Every text the library asked to encrypt or decrypt, in order.
  const std::vector<Request>& requests() const { return requests_; }

 private:
  std::vector<std::pair<std::string, std::string>> pairs_;  // later pairs first
  std::vector<Request> requests_;
};

Encryption& encryption();

}  // namespace refhost
