#include "export/export_names.h"

#include <gtest/gtest.h>

#include "base/cp1251.h"
#include "support/temp_folder.h"

namespace {

TEST(ExportNames, SignsThatSystemsRefuseBecomeUnderscores) {
  const std::pair<std::string, std::string> cases[] = {{"", ""},
                                                       {"Re: A/B?", "Re_ A_B_"},
                                                       {"><?:*\\/&\".", "__________"},
                                                       {"Київ, Іван і Ёж", "Київ, _ван _ Ёж"},
                                                       {"a\tb|c", "ab|c"}};  // the bar stays
  for (const auto& [text, want] : cases) {
    std::string name = cp1251::FromUtf8(text);
    mdl_AZ::SanitizeFileName(name);
    EXPECT_EQ(cp1251::ToUtf8(name), want);
  }
  std::string element = "a <b> &c: d";
  mdl_AZ::SanitizeElementName(element);
  EXPECT_EQ(element, "a _b_ _c: d");
}

TEST(ExportNames, AFilesNameFitsTheFileSystem) {
  const TempFolder folder;
  EXPECT_EQ(mdl_AZ::ExportFileName({"a\0b", 3}), "a_b.xml");
  const std::pair<std::string, std::size_t> cases[] = {{std::string(252, 'x'), 255},
                                                       {std::string(255, '\xC6'), 254},   // Ж, two bytes: 125 fit
                                                       {std::string(100, '\x88'), 253}};  // €, three bytes: 83 fit
  for (const auto& [text, bytes] : cases) {
    const std::string name = mdl_AZ::ExportFileName(text);
    EXPECT_EQ(name.size(), bytes);
    EXPECT_EQ(cp1251::ToUtf8(cp1251::FromUtf8(name)), name);  // no character is halved
    folder.Put(name, "x");
    EXPECT_EQ(folder.Get(name), "x");
  }
  EXPECT_EQ(mdl_AZ::ExportFolderName("C:\\Базы\\kdv 1.2.MDB"), "kdv 1.2");
  EXPECT_EQ(mdl_AZ::ExportFolderName("/a.b/...mdb"), "...mdb");  // not the folder above
}

}  // namespace
