#include "export/xml_export.h"

#include <memory>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "config/paths.h"
#include "explorer/node_key.h"
#include "explorer/tree_walk.h"
#include "export/export_names.h"
#include "export/message_xml.h"
#include "text/mdl_STR.h"

namespace mdl_AZ {

std::string BrowserFor(Shell& shell, const std::string& path) {
  return std::string(mdl_STR::CutAtNul(shell.FindExecutable(path)));
}

}  // namespace mdl_AZ

namespace {

constexpr std::string_view kExportFailed = "Ошибка экспорта! "_ru, kWalkFailed = "Ошибка разузлования! "_ru;

/// A file that is written from its start, a line at a time.
class LineWriter {
 public:
  LineWriter(FileSystem& files, const std::string& path)
      : file_(files.Open(path, files.Exists(path) ? OpenMode::kReadWrite : OpenMode::kCreate)) {
    file_->Truncate(0);
  }

  void Write(std::string_view line) {
    waiting_.append(line).append("\r\n");
    if (waiting_.size() >= kPortion) Flush();
  }
  void Close() {
    Flush();
    file_->Sync();  // some disks tell only now that they are full
  }

 private:
  static constexpr std::size_t kPortion = 256 * 1024;

  void Flush() {
    file_->WriteAt(written_, AsBytes(waiting_));
    written_ += waiting_.size();
    waiting_.clear();
  }

  std::unique_ptr<File> file_;
  std::uint64_t written_ = 0;
  std::string waiting_;
};

class Export {
 public:
  Export(const ExportNeeds& needs, const NodeTree& tree)
      : needs_(needs), tree_(tree), messages_(needs.connection, needs.ini, needs.log) {}

  ExportOutcome ExportMessages(NodeId node, const std::string& folder) {
    outcome_.path = paths::Join(folder, mdl_AZ::ExportFileName(tree_.Text(node)));
    try {
      WriteFile(node);
      if (needs_.shell != nullptr && needs_.ini.GetNeedOpenBrowser()) OpenFile(*needs_.shell);
    } catch (const Error& error) {
      needs_.log.Log(Cat(kExportFailed, "\r\n", error.what()));
      needs_.log.Log(KeyText(tree_.Key(node)));
      needs_.log.Log(ShownPath());
      Remember(error.what());
    }
    return outcome_;
  }

 private:
  void WriteFile(NodeId node) {
    LineWriter file(needs_.files, outcome_.path);
    file.Write(XmlHeader(needs_.ini));
    file.Write("<MESSAGES>");
    WriteMessage(node, file);
    const bool all_walked = ExportChildren(node, file);
    file.Write("</MESSAGES>");
    file.Close();
    outcome_.whole = all_walked;
    if (!messages_.first_failure().empty()) Remember(messages_.first_failure());
  }

  /// Depth first, without recursion: threads have been seen that are a thousand replies deep.
  bool ExportChildren(NodeId top, LineWriter& file) {
    try {
      const NodeId end = NodeAfterSubtree(tree_, top);
      LogKey(top);
      for (NodeId node = NodeAfter(tree_, top); node != end; node = NodeAfter(tree_, node)) {
        WriteMessage(node, file);
        LogKey(node);
      }
      return true;
    } catch (const Error& error) {
      needs_.log.Log(Cat(kWalkFailed, "\r\n", error.what()));
      Remember(error.what());
      return false;
    }
  }

  void WriteMessage(NodeId node, LineWriter& file) {
    file.Write(messages_.GetXMLMessage(KeyText(tree_.Key(node))));
    ++outcome_.messages;
    outcome_.unread = messages_.failures();
  }

  void OpenFile(Shell& shell) {
    needs_.log.Log(Cat("export:  ", ShownPath()));
    if (needs_.ini.GetOpenNewBrowser()) {
      shell.Start(mdl_AZ::BrowserFor(shell, outcome_.path), outcome_.path);
    } else if (!shell.Open(outcome_.path)) {
      constexpr std::string_view kNotOpened = "на компьютере нет программы для таких файлов"_ru;
      needs_.log.Log(Cat(kNotOpened, ": ", ShownPath()));
      Remember(kNotOpened);
    }
  }

  void LogKey(NodeId node) { needs_.log.Log(KeyText(tree_.Key(node))); }
  std::string ShownPath() const { return cp1251::FromUtf8(outcome_.path); }
  void Remember(std::string_view trouble) {
    if (outcome_.trouble.empty()) outcome_.trouble = trouble;
  }

  const ExportNeeds& needs_;
  const NodeTree& tree_;
  MessageXml messages_;
  ExportOutcome outcome_;
};

}  // namespace

std::string XmlHeader(const mdl_AZ::ForumIni& ini) {
  constexpr std::string_view kDeclaration = R"(<?xml version="1.0" encoding="Windows-1251"?>)";
  if (!ini.GetIsXsl()) return std::string(kDeclaration);
  return Cat(kDeclaration, "\r\n<?xml-stylesheet type=\"text/xsl\" href=\"", ini.GetExportXsl(), "\"?>\r\n");
}

ExportOutcome ExportMessages(const ExportNeeds& needs, const NodeTree& tree, NodeId node, const std::string& folder) {
  return Export(needs, tree).ExportMessages(node, folder);
}

std::string ExportSummary(const ExportOutcome& outcome) {
  const std::string path = cp1251::FromUtf8(outcome.path);
  if (!outcome.whole)
    return Cat("Записать цепочку целиком не удалось. Файл "_ru, path, " неполон или не создан: "_ru, outcome.trouble);
  const std::string written =
      Cat("Цепочка записана в файл "_ru, path, ". Сообщений: "_ru, outcome.messages - outcome.unread);
  if (outcome.unread > 0)
    return Cat(written, ". Не удалось прочитать из базы: "_ru, outcome.unread, " ("_ru, outcome.trouble, ")");
  return outcome.trouble.empty() ? written : Cat(written, ". Открыть файл не удалось: "_ru, outcome.trouble);
}
