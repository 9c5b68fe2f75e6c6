// Every forum downloaded from the demonstration server by the tool.

#include <atomic>

#include "cli/ui/fetch_stage.h"
#include "demo_forum/web_server.h"

namespace {

constexpr std::size_t kMessages = 60, kInBase = 20;

class FetchForum : public FetchStage, public testing::WithParamInterface<const char*> {
 protected:
  FetchForum() {
    demo_folder::Make(files_, program_, server_.Address(), site_, kInBase, clock_);
    expected_ = BaseWithPages(site_, base_, GetParam());
  }

  DemoSite site_{kMessages, 0, clock_};
  std::atomic<int> answers_ = 0;
  Conversation::Trouble trouble_ = [](std::string_view) { return Mischief{}; };
  WebServer server_{0, [this](std::string_view target) { return site_.Get(target); },
                    [this](std::string_view target) { return trouble_(target); }};
  std::string base_ = demo_folder::BasePath(program_, GetParam()), expected_;
};

TEST_P(FetchForum, TheBaseHoldsWhatTheServerHas) {
  const Outcome fetched = Kdvbase({"fetch", base_});
  EXPECT_EQ(fetched.status, 0) << fetched.out;
  EXPECT_NE(fetched.out.find("Записано сообщений: 40,"), std::string::npos) << fetched.out;
  ExpectSame(base_, expected_);
  const Outcome again = Kdvbase({"fetch", base_});
  EXPECT_EQ(again.status, 0) << again.out;
  ExpectSame(base_, expected_);
}

// Whatever goes wrong on the way, a page that did not come whole leaves nothing behind, and is there the next time.
TEST_P(FetchForum, HoldsNoPageThatDidNotComeWhole) {
  constexpr Mischief kMischief[] = {
      {Mischief::Kind::kDrop},      {Mischief::Kind::kReset}, {Mischief::Kind::kCut, 30}, {Mischief::Kind::kCut, 400},
      {Mischief::Kind::kLength, 1}, {Mischief::Kind::kLoop},  {Mischief::Kind::kEndless}, {Mischief::Kind::kNone}};
  const std::string last = Cat(site_.Messages(GetParam()).Last());
  trouble_ = [&](std::string_view target) {
    // A message whose author's page is missing is stored without the e-mail: so users expect.
    if (target.find("author") != std::string_view::npos) return Mischief{};
    return kMischief[static_cast<std::size_t>(++answers_) % std::size(kMischief)];
  };
  const Outcome marred = Kdvbase({"fetch", base_, "--from", "1", "--to", last});
  EXPECT_EQ(marred.status, 1) << marred.out;
  ExpectSound(base_);
  trouble_ = [](std::string_view) { return Mischief{}; };
  EXPECT_EQ(Kdvbase({"fetch", base_, "--from", "1", "--to", last}).status, 0);
  EXPECT_EQ(Kdvbase({"sql", base_, "select * from База order by Код", "--json"}).out,
            Kdvbase({"sql", expected_, "select * from База order by Код", "--json"}).out);
}

INSTANTIATE_TEST_SUITE_P(Forums, FetchForum, testing::Values("rts-an", "kdv", "ptrv", "moysha", "gelium", "ows_ptrv"),
                         [](const auto& kind) {
                           std::string name = kind.param;
                           std::erase_if(name, [](char c) { return c == '-' || c == '_'; });
                           return name;
                         });

}  // namespace
