#include "download/gunzip.h"

#include <gtest/gtest.h>

#include <string>

#include "base/cat.h"
#include "base/error.h"

namespace {

constexpr std::size_t kLargest = 5000;

std::string FromHex(std::string_view digits) {
  std::string bytes;
  for (std::size_t i = 0; i < digits.size(); i += 2)
    bytes += static_cast<char>(std::stoi(std::string(digits.substr(i, 2)), nullptr, 16));
  return bytes;
}

/// The lines that kOwnCodes was made of.
std::string Lines() {
  std::string text;
  for (int i = 0; i < 60; ++i) text += Cat("<p>", i, ": message ", i * 7919 % 1000, "</p>");
  return text;
}

// One for each way to squeeze, made by another program.
constexpr std::string_view kStored = "1f8b0800000000000003010c00f3ff6e6f742073717565657a65647145ff610c000000";
constexpr std::string_view kFixedCodes = "1f8b08000000000000032b2e2c4d4dad4a4d5128a6120300733dae8051000000";
constexpr std::string_view kOwnCodes =
    "1f8b08000000000000034dd44b6ac3401444d1ad7807e9f7eb4f30de8b0726a380c1fb8740e852dfe905810e52bdfbfbd1be6fbfafcfe7"
    "f9f3bab5fbd7fb717f3feca4656b473f71c6dc314e1c3576cc13fbe83bd689b56ac78e68b9e3383123769c2746f98eeb441fa69707c8d6"
    "4582c99a4c0694cb6440ad14caa09a5d2a036b4cb10caed1e432c0ba0b6690554a66a06517cd418b299a83e6ebfa5ca4996c0e9b856c0e"
    "5b89e6a0ad219a833697680eda34d11cb411a23968bd440bd06a8816a0e5142d40cb76fd8aa0858b16a079ca16b059972d68132d40132c"
    "005b2e582c3e2e580236ba6069dc8860e91c8960195cc935b2e44c04cbe24e04cbcea148968343912d6133932d610bd10ab455a2957128"
    "a2957328a215ef4713ad7840fc3a20bc20295a750e45b4e2479ba2158f4813ad7845fcdff6077063cf6b16050000";
constexpr std::string_view kEmpty = "1f8b080000000000000303000000000000000000";
constexpr std::string_view kWholeHead =
    "1f8b081e000000000003020061626e616d6500636f6d6d656e740000004b4c4a0600c241243503000000";
constexpr std::string_view kTwoMembers =
    "1f8b08000000000000034b4c4a0600c2412435030000001f8b08000000000000034b494d030061e1c40c03000000";

TEST(Gunzip, UnpacksEveryWayToSqueeze) {
  const std::pair<std::string_view, std::string> cases[] = {
      {kStored, "not squeezed"},
      {kFixedCodes, "squeezed squeezed squeezed squeezed squeezed squeezed squeezed squeezed squeezed "},
      {kOwnCodes, Lines()},
      {kEmpty, ""},
      {kWholeHead, "abc"},
      {kTwoMembers, "abcdef"},
  };
  for (const auto& [squeezed, want] : cases) EXPECT_EQ(Gunzip(FromHex(squeezed), kLargest), want);
}

TEST(Gunzip, TakesNoPieceForTheWhole) {
  for (const std::string_view digits : {kStored, kFixedCodes, kOwnCodes, kEmpty, kWholeHead}) {
    const std::string whole = FromHex(digits);
    for (std::size_t length = 0; length < whole.size(); ++length)
      EXPECT_THROW(Gunzip(std::string_view(whole).substr(0, length), kLargest), TransferError) << length;
    EXPECT_THROW(Gunzip(whole + "x", kLargest), TransferError);
  }
}

TEST(Gunzip, AnyBitMayLie) {  // another head, or an error: never another page
  for (const std::string_view digits : {kStored, kFixedCodes, kOwnCodes}) {
    const std::string good = FromHex(digits), page = Gunzip(good, kLargest);
    for (std::size_t bit = 0; bit < 8 * good.size(); ++bit) {
      std::string bad = good;
      bad[bit / 8] = static_cast<char>(bad[bit / 8] ^ (1 << (bit % 8)));
      try {
        EXPECT_EQ(Gunzip(bad, kLargest), page) << bit;
      } catch (const TransferError&) {
      }
    }
  }
}

TEST(Gunzip, StopsAtTheLimit) {
  EXPECT_EQ(Gunzip(FromHex(kFixedCodes), 81).size(), 81u);
  for (const std::size_t largest : {80u, 9u, 0u})
    EXPECT_THROW(Gunzip(FromHex(kFixedCodes), largest), TransferError) << largest;
}

}  // namespace
