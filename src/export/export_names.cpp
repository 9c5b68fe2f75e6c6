#include "export/export_names.h"

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

#include "base/cp1251.h"
#include "base/ru_literal.h"
#include "config/paths.h"
#include "text/strings.h"

namespace mdl_AZ {
namespace {

using text::LetterCase;
using text::Replacement;

constexpr std::string_view kExtension = ".xml";
constexpr std::string_view kSmallI = "і"_ru, kCapitalI = "І"_ru;

constexpr Replacement kFileNameSigns[] = {
    {">", "_"},     {"<", "_"},       {"?", "_"}, {":", "_"}, {"*", "_"},  {"\\", "_"}, {"/", "_"},
    {kSmallI, "_"}, {kCapitalI, "_"}, {"&", "_"}, {"\t", ""}, {"\"", "_"}, {".", "_"},
};
constexpr Replacement kElementNameSigns[] = {{">", "_"}, {"<", "_"}, {"&", "_"}};

/// The longest beginning of at most `size` bytes that ends with a whole character.
std::string_view WholeCharacters(std::string_view utf8, std::size_t size) {
  if (utf8.size() <= size) return utf8;
  const auto continues = [&](std::size_t at) { return (static_cast<unsigned char>(utf8[at]) & 0xC0) == 0x80; };
  while (size > 0 && continues(size)) --size;
  return utf8.substr(0, size);
}

}  // namespace

void SanitizeFileName(std::string& text) {
  text = text::ReplaceAll(std::move(text), kFileNameSigns, LetterCase::kExact);
}

void SanitizeElementName(std::string& text) {
  text = text::ReplaceAll(std::move(text), kElementNameSigns, LetterCase::kExact);
}

std::string ExportFolder(const std::string& program_folder, const std::string& name) {
  std::string folder = paths::Join(program_folder, name);
  std::error_code ignored;
  std::filesystem::create_directory(folder, ignored);
  return folder;
}

std::string ExportFolderName(std::string_view base_path) {
  const std::string_view file = paths::FileName(base_path);
  const std::string_view stem = file.substr(0, file.rfind('.'));
  const bool names_a_folder = stem.find_first_not_of('.') != std::string_view::npos;  // not "", "." or ".."
  return std::string(names_a_folder ? stem : file);
}

std::string ExportFileName(std::string_view node_text) {
  constexpr std::size_t kLongest = 255;  // bytes of a name on the usual file systems
  std::string stem(node_text);
  SanitizeFileName(stem);
  // No name can hold NUL; the others make one that nobody can type.
  std::replace_if(
      stem.begin(), stem.end(), [](unsigned char c) { return c < ' '; }, '_');
  const std::string utf8 = cp1251::ToUtf8(stem);
  return std::string(WholeCharacters(utf8, kLongest - kExtension.size())).append(kExtension);
}

}  // namespace mdl_AZ
