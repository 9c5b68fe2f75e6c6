#include "support/hostile_pages.h"

#include <gtest/gtest.h>

#include "base/error.h"
#include "download_configured/mdl_GELIUM.h"
#include "download_configured/mdl_MSHA.h"
#include "download_configured/mdl_OWS.h"
#include "download_configured/mdl_PTRV.h"
#include "download_configured/page_check.h"
#include "support/fixed_clock.h"

namespace {

const FixedClock kClock(2002, 6, 15);

constexpr std::string_view kFields[] = {"Тема"_ru, "Автор"_ru, "АвторMail"_ru, "Вответ"_ru, "Текст"_ru, "Дата"_ru};

// Each field gives a text or an Error, whatever the page is.
template <typename Parser>
void ExpectAnswers(std::string_view kind, const Parser& parser) {
  hostile_pages::ForEachPage(kind, [&](std::string_view page) {
    EXPECT_LE(trueMsg(kind, page), 2);
    for (const std::string_view field : kFields) try {
        EXPECT_LE(parser(page, field).size(), page.size() * 4 + 10);
      } catch (const Error&) {
      }
  });
}

TEST(HostilePages, Ptrv) {
  ExpectAnswers("ptrv", [](std::string_view page, std::string_view field) {
    return mdl_PTRV::ParsePtrvField(page, field, kClock);
  });
}

TEST(HostilePages, Moysha) { ExpectAnswers("moysha", mdl_MSHA::ParseMoyshaField); }

TEST(HostilePages, Gelium) { ExpectAnswers("gelium", mdl_GELIUM::ParseGeliumField); }

TEST(HostilePages, Ows) { ExpectAnswers("ows_ptrv", mdl_OWS::ParseOwsField); }

}  // namespace
