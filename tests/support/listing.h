#pragma once

#include <fstream>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

/// A table of a listing: JSON Lines, an object {"table", "columns"} and then an array per row.
struct ListedTable {
  std::string name;        // UTF-8, as all texts here
  nlohmann::json columns;  // [[name, type], ...]
  std::vector<nlohmann::json> rows;
};

inline std::vector<ListedTable> ReadListing(std::istream& lines) {
  std::vector<ListedTable> tables;
  for (std::string line; std::getline(lines, line);) {
    auto parsed = nlohmann::json::parse(line);
    if (parsed.is_object()) {
      tables.push_back({parsed.at("table"), parsed.at("columns"), {}});
    } else {
      tables.back().rows.push_back(std::move(parsed));
    }
  }
  return tables;
}

inline std::vector<ListedTable> ReadListingFile(const std::string& path) {
  std::ifstream file(path);
  return ReadListing(file);
}
