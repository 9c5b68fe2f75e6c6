#include "demo_forum/mischief.h"

#include <charconv>

namespace mischief {
namespace {

struct Name {
  std::string_view name;
  Mischief::Kind kind;
  bool has_amount = false;
};
constexpr Name kNames[] = {{"wait", Mischief::Kind::kWait, true},     {"drip", Mischief::Kind::kDrip, true},
                           {"silent", Mischief::Kind::kSilent},       {"drop", Mischief::Kind::kDrop},
                           {"reset", Mischief::Kind::kReset},         {"cut", Mischief::Kind::kCut, true},
                           {"status", Mischief::Kind::kStatus, true}, {"loop", Mischief::Kind::kLoop},
                           {"endless", Mischief::Kind::kEndless},     {"length", Mischief::Kind::kLength, true}};

std::optional<int> Amount(std::string_view text) {
  int amount = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), amount);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return amount;
}

}  // namespace

const char kHelp[] =
    "  wait:МС     ответить через столько миллисекунд\n"
    "  drip:МС     отвечать по одному байту, с такой паузой перед каждым\n"
    "  silent      не отвечать совсем\n"
    "  drop        закрыть соединение без ответа\n"
    "  reset       оборвать соединение (RST) без ответа\n"
    "  cut:N       закрыть соединение после N байт ответа, считая заголовки\n"
    "  status:N    ответить состоянием N (404, 500 ...) и страницей об ошибке\n"
    "  loop        отсылать к тому же адресу без конца\n"
    "  endless     слать страницу без конца\n"
    "  length:N    объявить страницу на N байт длиннее (короче, если N < 0)\n";

std::optional<Mischief> FromText(std::string_view text) {
  const std::size_t colon = text.find(':');
  for (const Name& known : kNames) {
    if (known.name != text.substr(0, colon) || known.has_amount != (colon != std::string_view::npos)) continue;
    if (!known.has_amount) return Mischief{known.kind};
    const std::optional<int> amount = Amount(text.substr(colon + 1));
    if (amount && (*amount >= 0 || known.kind == Mischief::Kind::kLength)) return Mischief{known.kind, *amount};
  }
  return std::nullopt;
}

std::optional<Mischief> TakeFromPath(std::string_view& path) {
  if (!path.starts_with("/@")) return std::nullopt;
  const std::size_t end = path.find('/', 1);
  const std::optional<Mischief> asked = FromText(path.substr(2, end == std::string_view::npos ? end : end - 2));
  if (asked) path = end == std::string_view::npos ? "/" : path.substr(end);
  return asked;
}

}  // namespace mischief
