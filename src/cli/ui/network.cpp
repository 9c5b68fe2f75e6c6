#include "cli/network.h"

#include <QCoreApplication>

#include "download/ui/http_fetcher.h"
#include "download/ui/qt_alarm.h"

namespace cli {
namespace {

/// Brings along the event loop that transfers need: a tool has no other use for one.
class QtNetwork : public Network {
 public:
  PageFetcher& pages() override { return fetcher_; }
  Alarm& alarm() override { return alarm_; }
  void RunEvents() override { QCoreApplication::processEvents(); }

 private:
  int count_ = 1;
  char name_[8] = "kdvbase";
  char* words_[2] = {name_, nullptr};
  QCoreApplication application_{count_, words_};
  HttpFetcher fetcher_;
  QtAlarm alarm_;
};

}  // namespace

std::unique_ptr<Network> MakeNetwork() { return std::make_unique<QtNetwork>(); }

}  // namespace cli
