#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <ostream>
#include <string>
#include <string_view>

#include "cli/interrupt.h"
#include "cli/network.h"
#include "download/grouped_records.h"
#include "download/session_view.h"
#include "store/query_recordset.h"

namespace cli {

/// A download session as lines of text: one for every number, or, on a terminal, one line that tells how far it is.
/// What is told as stored is on the disk.
class FetchView : public SessionView {
 public:
  struct Totals {
    int stored = 0, already_there = 0, absent = 0, failed = 0;
  };

  /// All outlive this object. What became of a number is read in `records`.
  FetchView(std::ostream& out, bool on_terminal, QueryRecordset& records, Network& network, const Interrupt& interrupt)
      : out_(out), on_terminal_(on_terminal), records_(records), network_(network), interrupt_(interrupt) {}

  /// Called between two numbers when the user asks to stop; stops the session.
  void OnInterrupt(std::function<void()> stop) { stop_ = std::move(stop); }

  /// What became of rows of the session.
  void Settle(const SettledRows& settled);

  const Totals& totals() const { return totals_; }
  /// Did the session end before its last number because it was asked to?
  bool stopped() const { return stopped_; }
  /// Why it could not do its work; empty when it could.
  const std::string& problem() const { return problem_; }

  void SetPanel(int panel, std::string_view text) override;
  void SetHint(std::string_view text) override;
  void SetBegin(std::string_view) override {}
  void SetEnd(std::string_view) override {}
  void ClearLog() override {}
  void AppendLog(std::string_view) override {}
  void SetProgress(int percent) override { percent_ = percent; }

  void ClearRows() override {}
  void SortRowsNewestFirst() override {}
  void AddRow(std::string_view text) override;
  void SetCell(int column, std::string_view text) override;
  void SetIcon(int icon) override { row_.icon = icon; }
  void SetColour(std::uint32_t) override {}
  void ScrollToRow() override {}

  void Enable(SessionButton, bool) override {}
  bool IsEnabled(SessionButton) const override { return true; }
  void SetHourglass(bool) override {}

  void ProcessEvents() override;
  void WaitForEvents() override {}
  void PauseBeforeRetry() override;
  void Close() override {}
  void ShowMessage(MessageIcon, std::string_view text) override { problem_ = text; }

 private:
  struct Row {
    std::int32_t number = 0;
    int icon = 0;
    bool stored = false;  // for certain
    std::string author, subject, status;
  };
  /// What became of a number.
  struct Outcome {
    std::int32_t number;
    int Totals::*counter;
    std::string text;
    bool certain = true;
  };

  void EndRow();
  Outcome OutcomeOf(const Row& row) const;
  void PrintCertain();
  void Print(const Outcome& outcome);
  void StopIfAsked();

  std::ostream& out_;
  const bool on_terminal_;
  QueryRecordset& records_;
  Network& network_;
  const Interrupt& interrupt_;
  std::function<void()> stop_;
  Row row_;
  std::deque<Outcome> untold_;  // in the order of the session
  Totals totals_;               // of what was told
  std::string problem_;
  int percent_ = 0;
  int retries_ = 0;  // of the number under way
  bool stopped_ = false;
};

/// "Записано сообщений: 57, уже были в базе: 0 ..."
std::string TotalsText(const FetchView::Totals& totals);

}  // namespace cli
