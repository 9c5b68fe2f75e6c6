#include <algorithm>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "config/program_folder.h"
#include "saved_pages/forum_pages.h"
#include "text/numbers.h"

namespace cli {

std::optional<std::string> Arguments::Value(std::string_view option) const {
  const auto found = options_.find(option);
  if (found == options_.end()) return std::nullopt;
  return found->second;
}

class ArgumentReader {
 public:
  ArgumentReader(const Command& command, std::span<const std::string> words) : command_(command), words_(words) {}

  Arguments Read() {
    while (at_ < words_.size()) {
      const std::string& word = words_[at_++];
      if (only_words_ || !word.starts_with("--")) {
        arguments_.words_.push_back(word);
      } else if (word == "--") {
        only_words_ = true;
      } else {
        ReadOption(word);
      }
    }
    const std::size_t count = arguments_.words_.size();
    if (count < command_.least_words) throw UsageError("Не хватает аргументов"_ru);
    if (count > command_.most_words)
      throw UsageError(Cat("Лишний аргумент: "_ru, cp1251::FromUtf8(arguments_.words_[command_.most_words])));
    return std::move(arguments_);
  }

 private:
  void ReadOption(const std::string& word) {
    const std::size_t sign = word.find('=');
    const std::string name = word.substr(0, sign);
    const bool has_value = sign != std::string::npos;
    if (TakesValue(name) != has_value) {
      if (has_value) throw UsageError(Cat("У параметра "_ru, name, " нет значения"_ru));
      if (at_ == words_.size()) throw UsageError(Cat("Параметру "_ru, name, " нужно значение"_ru));
      arguments_.options_[name] = words_[at_++];
    } else {
      arguments_.options_[name] = has_value ? word.substr(sign + 1) : std::string();
    }
  }

  bool TakesValue(const std::string& name) const {
    if (name == "--data-dir") return true;
    const auto known = std::find_if(command_.options.begin(), command_.options.end(),
                                    [&](const Option& option) { return option.name == name; });
    if (known == command_.options.end()) throw UsageError(Cat("Неизвестный параметр "_ru, cp1251::FromUtf8(name)));
    return known->takes_value;
  }

  const Command& command_;
  std::span<const std::string> words_;
  std::size_t at_ = 0;
  bool only_words_ = false;
  Arguments arguments_;
};

std::string ProgramFolder(const Arguments& arguments) {
  return program_folder::Find(program_folder::OfThisProcess(arguments.Value("--data-dir").value_or("")));
}

std::string OneLine(std::string_view text) {
  std::string line(text);
  std::replace_if(
      line.begin(), line.end(), [](unsigned char c) { return c < ' ' || c == 0x7F; }, ' ');
  return cp1251::ToUtf8(line);
}

std::int32_t MessageNumber(const std::string& word) {
  const std::string number = cp1251::FromUtf8(word);
  if (!text::IsNumber(number)) throw UsageError(Cat("Не номер сообщения: "_ru, number));
  return text::StrictLong(number);
}

std::string ForumCode(const std::string& word) {
  std::string code = cp1251::FromUtf8(word);
  if (!ForumPages::Knows(code)) throw UsageError(Cat("Неизвестный форум: "_ru, code));
  return code;
}

Arguments ReadArguments(const Command& command, std::span<const std::string> words) {
  return ArgumentReader(command, words).Read();
}

}  // namespace cli
