#include "saved_pages/forum_pages.h"

#include "base/cat.h"
#include "base/error.h"
#include "base/ru_literal.h"
#include "download_configured/configured_page.h"
#include "download_configured/page_check.h"
#include "download_fixed/fixed_forum.h"

namespace {

/// Nobody watches; the author's page is there already.
class QuietReading : public configured_page::Reading {
 public:
  explicit QuietReading(std::string_view author_page) : author_page_(author_page) {}
  void FieldRead(std::string_view, std::string_view) override {}
  void DateRead(std::string_view, std::optional<OleDate>) override {}
  std::string AuthorPage(std::string_view) override { return std::string(author_page_); }

 private:
  std::string_view author_page_;
};

}  // namespace

bool ForumPages::Knows(std::string_view kind) {
  return FindFixedForum(kind) != nullptr || configured_page::KnowsPagesOf(kind);
}

ForumPages::ForumPages(std::string_view kind, const Clock& clock)
    : kind_(kind), clock_(clock), fixed_(FindFixedForum(kind)) {
  if (!Knows(kind)) throw Error(error_number::kBadArgument, Cat("Неизвестный форум: "_ru, kind));
}

int ForumPages::Check(std::string_view page) const { return fixed_ ? fixed_->check(page) : trueMsg(kind_, page); }

MessageRecord ForumPages::Parse(std::string_view page, std::int32_t number, std::string_view author_page) const try {
  if (fixed_ != nullptr) {
    int step = 0;
    return fixed_->parse(page, number, clock_, step);
  }
  QuietReading reading(author_page);
  return configured_page::ParseMessage(kind_, page, number, clock_, reading);
} catch (const Error& error) {  // the parsers' own texts speak of numbers and dates alone
  throw Error(error.number(), Cat("Страница не разбирается: "_ru, error.what()));
}

StoredFields ForumPages::FieldsToStore(const MessageRecord& message) const {
  return fixed_ ? fixed_->fields(message) : configured_page::FieldsToStore(message);
}

bool ForumPages::HasAuthorPages() const { return configured_page::HasAuthorPages(kind_); }
