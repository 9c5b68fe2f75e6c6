#include "download_configured/page_check.h"

#include "base/ru_literal.h"
#include "download/page_code.h"
#include "text/strings.h"

namespace {

struct Report {
  std::string_view marker;
  int code;
  std::string_view kind = "";  // the one forum that uses the marker; empty: all do
};

// A later one overrides an earlier one.
constexpr Report kReports[] = {
    {"Not Found (404)", page_code::kNoSuchMessage},
    {"404 Not Found</TITLE>", page_code::kNoSuchMessage},
    {"Cannot find server</TITLE>", page_code::kNoSuchMessage},
    {"Сервер не найден"_ru, page_code::kNoSuchMessage},
    {"Proxy Server Report: Default", page_code::kNotLoaded},
    {"*previousname* on *previousdate*:", page_code::kNoSuchMessage, "ptrv"},  // a message that was never written
};

}  // namespace

int trueMsg(std::string_view kind, std::string_view page) {
  int code = page.empty() ? page_code::kNotLoaded : page_code::kMessage;
  for (const Report& report : kReports)
    if ((report.kind.empty() || report.kind == kind) && text::Contains(page, report.marker)) code = report.code;
  return code;
}
