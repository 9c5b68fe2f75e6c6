#include "download/ui/page_url.h"

#include <QByteArray>

#include "base/cp1251.h"

namespace {

bool HasScheme(std::string_view address) {
  return cp1251::StartsWithIgnoringCase(address, "http://") || cp1251::StartsWithIgnoringCase(address, "https://");
}

// QUrl would send Cyrillic as UTF-8; the forums expect the bytes.
void AppendEscaped(QByteArray& to, char c) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  const auto byte = static_cast<unsigned char>(c);
  if (byte > 0x20 && byte < 0x7F) {
    to += c;
    return;
  }
  to += '%';
  to += kDigits[byte >> 4];
  to += kDigits[byte & 0xF];
}

}  // namespace

QUrl PageUrl(std::string_view address) {
  QByteArray escaped;
  if (!HasScheme(address)) escaped += "http://";
  for (const char c : address) AppendEscaped(escaped, c);
  return QUrl::fromEncoded(escaped, QUrl::TolerantMode);
}
