#include <cstdlib>

#include "base/error.h"
#include "base/ru_literal.h"
#include "download_configured/mdl_GELIUM.h"
#include "download_configured/mdl_MSHA.h"
#include "download_configured/mdl_OWS.h"
#include "download_configured/mdl_PTRV.h"
#include "download_configured/page_check.h"
#include "download_fixed/kdv.h"
#include "download_fixed/rts_an.h"
#include "support/fixed_clock.h"
#include "support/hostile_pages.h"
#include "text/dates.h"

namespace {

const FixedClock kClock(2002, 6, 15);

void Require(bool holds) {
  if (!holds) std::abort();
}

void ExpectWhole(const MessageRecord& message) {
  Require(message.Код == 7 && !message.Тема.empty() && !message.Текст.empty() && message.Дата.has_value());
}

[[maybe_unused]] void RtsAn(std::string_view page) {
  int step = 0;
  try {
    Require(rts_an::trueMsg(page) <= 2);
    ExpectWhole(rts_an::ParseMessage(page, 7, kClock, step));
  } catch (const Error&) {
    Require(step == 15 || step == 17);
  }
  Require(rts_an::HighestNumber(page) >= 0);
}

[[maybe_unused]] void Kdv(std::string_view page) {
  int step = 0;
  try {
    Require(kdv::trueMsgKDV(page) <= 2);
    ExpectWhole(kdv::ParseMessage(page, 7, kClock, step));
  } catch (const Error&) {
    Require(step == 4);
  }
}

constexpr std::string_view kReplyTo = "Вответ"_ru, kDate = "Дата"_ru;
constexpr std::string_view kFields[] = {"Тема"_ru, "Автор"_ru, "АвторMail"_ru, kReplyTo, "Текст"_ru, kDate};

// A field is a text or an Error; a date is one that the program can read back.
template <typename Parser>
void ReadFields(std::string_view kind, std::string_view page, const Parser& parser) {
  Require(trueMsg(kind, page) <= 2);
  for (const std::string_view field : kFields) try {
      const std::string text = parser(page, field);
      Require(field != kDate || text.empty() || text::IsDate(text, kClock));
      Require(field != kReplyTo || !text.empty());
    } catch (const Error&) {
    }
}

[[maybe_unused]] void Ptrv(std::string_view page) {
  ReadFields("ptrv", page, [](std::string_view from, std::string_view field) {
    return mdl_PTRV::ParsePtrvField(from, field, kClock);
  });
}

[[maybe_unused]] void Moysha(std::string_view page) { ReadFields("moysha", page, mdl_MSHA::ParseMoyshaField); }
[[maybe_unused]] void Gelium(std::string_view page) { ReadFields("gelium", page, mdl_GELIUM::ParseGeliumField); }
[[maybe_unused]] void Ows(std::string_view page) { ReadFields("ows_ptrv", page, mdl_OWS::ParseOwsField); }

}  // namespace

// The input is read as a page, and as what a user wrote into every field of one.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  for (const std::string& page : {std::string(input), hostile_pages::PageOf(FUZZ_KIND, input)}) try {
      FUZZ_PARSER(page);
    } catch (const Error&) {
    }
  return 0;
}
