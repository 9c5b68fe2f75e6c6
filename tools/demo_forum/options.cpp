#include "demo_forum/options.h"

#include <charconv>
#include <limits>
#include <string_view>

namespace {

template <typename Number>
Number ReadNumber(std::string_view name, std::string_view text, Number least, Number most) {
  Number number{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc() || end != text.data() + text.size() || number < least || number > most)
    throw UsageError(std::string(name) + " нужно число от " + std::to_string(least) + " до " + std::to_string(most));
  return number;
}

constexpr std::size_t kMostMessages = 1'000'000;
constexpr int kMost = std::numeric_limits<int>::max();

Mischief ReadMischief(std::string_view text) {
  const std::optional<Mischief> mischief = mischief::FromText(text);
  if (!mischief) throw UsageError("неизвестная неполадка: " + std::string(text));
  return *mischief;
}

void ReadOption(std::string_view name, std::string_view value, Options& to) {
  if (name == "--port")
    to.port = ReadNumber<std::uint16_t>(name, value, 0, std::numeric_limits<std::uint16_t>::max());
  else if (name == "--messages")
    to.messages = ReadNumber<std::size_t>(name, value, 0, kMostMessages);
  else if (name == "--base-messages")
    to.base_messages = ReadNumber<std::size_t>(name, value, 0, kMostMessages);
  else if (name == "--grow")
    to.grow = ReadNumber<std::int32_t>(name, value, 0, kMost);
  else if (name == "--program-folder")
    to.program_folder = value;
  else if (name == "--fault")
    to.mischief = ReadMischief(value);
  else if (name == "--every")
    to.every = ReadNumber<int>(name, value, 1, kMost);
  else
    throw UsageError("неизвестный параметр " + std::string(name));
}

}  // namespace

Options ReadOptions(std::span<const char* const> words) {
  Options options;
  for (std::size_t at = 0; at < words.size(); ++at) {
    const std::string_view word = words[at];
    if (word == "--") {
      options.command.assign(words.begin() + static_cast<std::ptrdiff_t>(at) + 1, words.end());
      if (options.command.empty()) throw UsageError("после -- нужна команда");
      break;
    }
    if (word == "--help") {
      options.help = true;
    } else if (word == "--log") {
      options.log = true;
    } else {
      if (at + 1 == words.size()) throw UsageError("неизвестный параметр или нет значения: " + std::string(word));
      ReadOption(word, words[++at], options);
    }
  }
  return options;
}

std::string Help() {
  return std::string(
             "demo_forum [ПАРАМЕТРЫ] [-- КОМАНДА...]\n"
             "Учебный веб-сервер с шестью форумами; отвечает только этому компьютеру (127.0.0.1).\n"
             "Печатает свой адрес и работает, пока не получит SIGINT или SIGTERM; если названа КОМАНДА,\n"
             "запускает её и заканчивает вместе с ней, с её состоянием выхода. Команда находит адрес в\n"
             "переменной DEMO_FORUM (127.0.0.1:ПОРТ), папку программы - в QUORVEX_DIR.\n"
             "\n"
             "  --port N              порт; без параметра - любой свободный\n"
             "  --messages N          сообщений в каждом форуме вначале (560); часть номеров пропущена\n"
             "  --grow СЕК            каждые столько секунд - новое сообщение в каждом форуме; 0 - никогда (так и без\n"
             "                        параметра)\n"
             "  --program-folder ДИР  сделать папку программы: forum.ini с адресами этого сервера и по базе на форум;\n"
             "                        базы, которые там уже есть, остаются как были\n"
             "  --base-messages N     сообщений в каждой такой базе (500) - первые из тех, что на сервере\n"
             "  --fault НЕПОЛАДКА     портить ответы\n"
             "  --every N             портить только каждый N-й ответ\n"
             "  --log                 печатать запросы на stderr\n"
             "\n"
             "Неполадка может стоять и в адресе, перед папкой форума: /@cut:100/kdv/messages/1.html\n") +
         mischief::kHelp +
         "\n"
         "Форумы:\n"
         "  /kdv/messages/N.html, /kdv/data.txt\n"
         "  /rts-an.example, /rts-an.example/default.asp?action=view&id=N&returnpage=0\n"
         "  /ptrv/show.cgi?number=N\n"
         "  /moysha/read.asp?message=N&view=plain, /gelium/read.asp?message=N&view=plain\n"
         "  /ows_ptrv/message.cgi?id=N, /ows_ptrv/author.cgi?name=НИК\n";
}
