#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/cat.h"
#include "base/cp1251.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "cli/command.h"
#include "cli/fetch_view.h"
#include "cli/interrupt.h"
#include "config/mdl_AZ.h"
#include "download/grouped_records.h"
#include "download_configured/configured_page.h"
#include "download_configured/configured_session.h"
#include "download_fixed/fixed_session.h"
#include "store/base_recordset.h"
#include "store/message_base.h"

namespace cli {
namespace {

/// Keeps the states of a transfer from the session, which runs events at each of them: a stop is wanted
/// between two messages only.
class StatelessFetcher : public PageFetcher {
 public:
  explicit StatelessFetcher(PageFetcher& fetcher) : fetcher_(fetcher) {}
  std::string OpenUrl(std::string_view url, std::int32_t timeout) override { return fetcher_.OpenUrl(url, timeout); }
  void Cancel() override { fetcher_.Cancel(); }
  void OnStateChanged(StateChanged) override {}

 private:
  PageFetcher& fetcher_;
};

RangeChoice ChosenRange(const Arguments& arguments) {
  const auto from = arguments.Value("--from"), to = arguments.Value("--to");
  if (from.has_value() != to.has_value()) throw UsageError("Параметры --from и --to нужны вместе"_ru);
  if (!from) return {};
  return {.automatic = false, .begin = Cat(MessageNumber(*from)), .end = Cat(MessageNumber(*to))};
}

void RequireDownloads(const mdl_AZ::ForumIni& ini, const std::string& kind) {
  if (kind.empty()) throw Error(error_number::kNoSuchItem, kUnknownForumMessage);
  if (ini.GetStopDownload(kind) != 0)
    throw Error(error_number::kNoSuchItem, Cat(kind, " отключен для загрузки новых сообщений!"_ru));
}

struct Download {
  const std::string& kind;
  const std::string& host;
  QueryRecordset& records;
  PageFetcher& fetcher;
  FetchView& view;
  const mdl_AZ::ForumIni& ini;
  const mdl_AZ::ForumLog& log;
  const Clock& clock;
};

void RunSession(const Download& with, const RangeChoice& range) {
  if (FindFixedForum(with.kind) != nullptr) {
    FixedSession session({with.records, with.fetcher, with.view, with.ini, with.log, with.clock, with.host});
    with.view.OnInterrupt([&session] { session.cmdCancelDL_Click(); });
    session.cmdDownload_Click(with.kind, range);
  } else if (configured_page::KnowsPagesOf(with.kind)) {
    ConfiguredSession session({with.kind, with.records, with.fetcher, with.view, with.ini, with.log, with.clock});
    with.view.OnInterrupt([&session] { session.cmdCancelDL_Click(); });
    session.cmdDownload_Click(range);
  } else {
    throw Error(error_number::kBadArgument, Cat("Неизвестный форум: "_ru, with.kind));
  }
}

void Report(const FetchView& view, Context& context) {
  const FetchView::Totals& totals = view.totals();
  if (context.on_terminal) context.out << "\r\033[K";
  const bool nothing = totals.stored + totals.already_there + totals.absent + totals.failed == 0;
  if (nothing && !view.problem().empty()) throw Error(error_number::kNoSuchItem, view.problem());
  context.out << cp1251::ToUtf8(nothing ? std::string(kNothingNewHint) : TotalsText(totals)) << '\n';
  if (!view.problem().empty()) throw Error(error_number::kNoSuchItem, view.problem());
  if (view.stopped()) {
    context.out << cp1251::ToUtf8(kStoppedText) << '\n';
    context.status = kStopped;
  } else if (totals.failed > 0) {
    throw TransferError(error_number::kNoSuchItem, Cat("Не получено сообщений: "_ru, totals.failed));
  }
}

void Fetch(const Arguments& arguments, Context& context) {
  const RangeChoice range = ChosenRange(arguments);
  const mdl_AZ::ForumIni ini(context.files, ProgramFolder(arguments));
  const mdl_AZ::ForumLog log(ini, context.files, context.clock);
  MessageBase base(context.files, context.clock, ini);
  base.OpenBase(arguments[0]);
  RequireDownloads(ini, base.forum_kind());
  const std::unique_ptr<Network> network = context.make_network ? context.make_network() : nullptr;
  if (network == nullptr)
    throw Error(error_number::kNoSuchItem, "Эта kdvbase собрана без Qt и не умеет загружать страницы"_ru);
  StatelessFetcher fetcher(network->pages());
  BaseRecordset rows(base);
  const Interrupt interrupt;
  FetchView view(context.out, context.on_terminal, rows, *network, interrupt);
  GroupedRecords records(rows, network->alarm(), [&view](const SettledRows& settled) { view.Settle(settled); });
  RunSession({base.forum_kind(), base.host(), records, fetcher, view, ini, log, context.clock}, range);
  Report(view, context);
}

constexpr Option kOptions[] = {{"--from", true}, {"--to", true}};

constexpr Command kCommands[] = {
    {"fetch", "БАЗА [--from НОМЕР --to НОМЕР]",
     "загрузить с форума новые сообщения или названные номера; Ctrl-C останавливает между сообщениями (состояние\n"
     "    выхода 3), второе - сразу; состояние 1 - форум недоступен или получено не всё; нового нет - 0",
     1, 1, kOptions, Fetch},
};

}  // namespace

std::span<const Command> FetchCommands() { return kCommands; }

}  // namespace cli
