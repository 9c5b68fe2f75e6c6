#include "download_fixed/fixed_forum.h"

#include "base/cat.h"
#include "base/ru_literal.h"
#include "download/page_code.h"
#include "download_fixed/import_kdv.h"
#include "download_fixed/import_rts_an.h"
#include "download_fixed/kdv.h"
#include "download_fixed/last_number.h"
#include "download_fixed/rts_an.h"
#include "text/strings.h"

namespace {

// An installation names its forums' hosts in forum.ini; these stand in for what it leaves out.
constexpr std::string_view kKdvBuiltInAddress = "kdv.example/forum";
constexpr std::string_view kRtsAnDomain = "example";

std::string KdvPageAddress(const FixedDownload& with, std::int32_t number) {
  return Cat(KdvAddress(with.ini), "/messages/", number, ".html");
}

std::string RtsAnPageAddress(const FixedDownload& with, std::int32_t number) {
  return Cat(RtsAnAddress(with.ForumSubHost), "/default.asp?action=view&id=", number, "&returnpage=0");
}

constexpr FixedForum kFixedForums[] = {
    {
        .kind = "rts-an",
        .range_error = "Ошибка : номер первого сообщения больше последнего..."_ru,
        .page_address = RtsAnPageAddress,
        .check = rts_an::trueMsg,
        .parse = rts_an::ParseMessage,
        .fields = rts_an::FieldsToStore,
        .import = ImportRtsAnMessage,
        .look_up_last = GetLastRtsAn,
    },
    {
        .kind = "kdv",
        .range_error = "Ошибка : номер первого сообщения равен или больше последнего..."_ru,  // equal ones pass
        .page_address = KdvPageAddress,
        .check = kdv::trueMsgKDV,
        .parse = kdv::ParseMessage,
        .fields = kdv::FieldsToStore,
        .import = ImportKdvMessage,
        .look_up_last = GetLastKDV,
    },
};

}  // namespace

const FixedForum* FindFixedForum(std::string_view kind) {
  for (const FixedForum& forum : kFixedForums)
    if (forum.kind == kind) return &forum;
  return nullptr;
}

int truePgMoysha(std::string_view page) {
  if (page.empty()) return page_code::kNotLoaded;
  const bool absent = text::Contains(page, "WebBoard: Not available</TITLE>", text::LetterCase::kExact);
  return absent ? page_code::kNoSuchMessage : page_code::kMessage;
}

std::string KdvAddress(const mdl_AZ::ForumIni& ini) {
  std::string address = ini.ReadForumIni("kdv", "URL");
  return address.empty() ? std::string(kKdvBuiltInAddress) : address;
}

std::string RtsAnAddress(std::string_view sub_host) { return Cat(sub_host, kRtsAnDomain); }
