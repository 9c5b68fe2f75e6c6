#include "export/ui/export_command.h"

#include <gtest/gtest.h>

#include "base/ru_literal.h"
#include "export/thread_choice.h"
#include "store/base_recordset.h"
#include "store/new_base.h"
#include "support/memory_settings.h"
#include "support/program_stage.h"
#include "support/scripted_dialogs.h"
#include "ui/text.h"

namespace {

class NoShell : public Shell {
 public:
  std::string FindExecutable(const std::string&) override { return {}; }
  void Start(const std::string&, const std::string&) override {}
  bool Open(const std::string&) override { return false; }
};

class ExportOfAMessage : public testing::Test, protected ProgramStage {};

TEST_F(ExportOfAMessage, WritesItsThreadWhereverItIsChosenAndTellsTheRest) {
  folder_.Put("forum.ini", "[EXPORT]\r\nOpenNewIE=0\r\n");
  MemorySettings settings;
  settings.Set("MessageFormat", "Тема - Автор");
  ScriptedDialogs dialogs;
  NoShell shell;
  MessageBase base(files_, clock_, ini_);
  CreateMessageBase(files_, folder_ / "kdv_2002.mdb", {}, clock_);
  base.OpenBase(folder_ / "kdv_2002.mdb");
  {
    BaseRecordset rows(base);
    rows.AddNew();
    rows.SetNumber("Код"_ru, 2);
    rows.SetText("Тема"_ru, "Рынок"_ru);
    rows.SetText("Автор"_ru, "Иван"_ru);
    rows.Update();
  }
  const NodeTree threads = WholeArchive(base.connection(), {}, clock_);
  NodeTree found;  // of a search, in a tree without threads: files are called as the settings caption them
  const NodeId results = found.Add(kRootNode, Placement::kLastChild, NodeKind::kResults, 0, "r");
  const NodeId message = found.Add(results, Placement::kLastChild, NodeKind::kFoundMessage, 2, "Рынок"_ru);
  const NodeId gone = found.Add(results, Placement::kLastChild, NodeKind::kFoundMessage, 9, "?");
  const struct {
    const NodeTree& tree;
    NodeId node;
    const char *status, *told;
  } cases[] = {
      {threads, threads.Find(NodeKind::kThreadMessage, 2), "/kdv_2002/Рынок.xml. Сообщений: 1", "Открыть файл"},
      {found, message, "/kdv_2002/Рынок - Иван.xml. Сообщений: 1", "Открыть файл"},
      {found, gone, "", "Этого сообщения в базе уже нет."},
      {found, results, "", "Выберите в дереве сообщение"},
      {found, kNoNode, "", "Выберите в дереве сообщение"}};
  ExportCommand command({files_, clock_, ini_, log_, settings, dialogs, shell});
  for (const auto& c : cases) {
    dialogs.told.clear();
    const QString status = command.ExportMSG_Click(nullptr, base, c.tree, c.node);
    EXPECT_TRUE(status.contains(QString::fromUtf8(c.status)) && status.isEmpty() == (*c.status == '\0')) << c.status;
    ASSERT_EQ(dialogs.told.size(), 1U) << c.told;
    EXPECT_TRUE(dialogs.told[0].contains(QString::fromUtf8(c.told))) << c.told;
  }
}

}  // namespace
