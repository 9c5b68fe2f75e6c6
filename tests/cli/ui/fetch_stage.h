#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "base/cat.h"
#include "demo_forum/demo_folder.h"
#include "demo_forum/demo_pages.h"
#include "support/fixed_clock.h"
#include "support/running_program.h"
#include "support/temp_folder.h"

/// A demonstration site, its pages saved in files, and kdvbase run as a program.
class FetchStage : public testing::Test {
 protected:
  struct Outcome {
    int status = 0;
    std::string out;
  };

  FetchStage() {
    for (const char* variable : {"no_proxy", "NO_PROXY"}) ::setenv(variable, "127.0.0.1", 1);
  }

  Outcome Kdvbase(std::vector<std::string> words) {
    RunningProgram program(Words(std::move(words)));
    const std::string out = program.ReadRest();
    return {program.Wait(), out};
  }
  std::vector<std::string> Words(std::vector<std::string> words) const {
    words.insert(words.begin(), KDVBASE);
    words.insert(words.end(), {"--data-dir", program_});
    return words;
  }

  /// The base with the saved pages imported: all that a download may make of it.
  std::string BaseWithPages(DemoSite& site, const std::string& base, std::string_view kind) {
    std::string copy = folder_ / Cat(kind, "_expected.mdb");
    std::filesystem::copy_file(base, copy);
    const std::string pages = SavePages(site, kind, Cat("pages/", kind));
    const Outcome imported = Kdvbase({"import", copy, pages});
    EXPECT_EQ(imported.status, 0) << imported.out;
    return copy;
  }
  /// @return the folder with the pages "1.html" ...
  std::string SavePages(DemoSite& site, std::string_view kind, const std::string& to) {
    for (const MessageRecord& message : site.Messages(kind).All()) {
      folder_.Put(Cat(to, "/", message.Код, ".html"), demo_pages::MessagePage(kind, message));
      if (kind == "ows_ptrv")
        folder_.Put(Cat(to, "/", message.Код, "_author.html"), demo_pages::OwsAuthorPage(message));
    }
    return folder_ / to;
  }
  void ExpectSame(const std::string& base, const std::string& expected) {
    EXPECT_EQ(Kdvbase({"dump", base}).out, Kdvbase({"dump", expected}).out);
    ExpectSound(base);
  }
  void ExpectSound(const std::string& base) {
    const Outcome check = Kdvbase({"check", base});
    EXPECT_EQ(check.status, 0) << check.out;
  }

  TempFolder folder_;
  std::string program_ = folder_ / "program";
  DiskFileSystem files_;
  FixedClock clock_{2026, 11, 21};
};
