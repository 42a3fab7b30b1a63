#pragma once

#include "model/JsonCoding.h"

#include <nlohmann/json.hpp>

#include <cstdint>
#include <string>

namespace velmor {

/// Reads the members of a record's JSON object. Every member must be there in its own type;
/// members that nobody reads are ignored. Throws DecodingError.
class RecordReader {
public:
  explicit RecordReader(const nlohmann::json& json);

  [[nodiscard]] std::string text(const char* key) const;
  /// Any number without a fractional part that fits.
  [[nodiscard]] std::int64_t integer(const char* key) const;
  [[nodiscard]] double number(const char* key) const;
  [[nodiscard]] bool boolean(const char* key) const;

  /// A nested record or an array of records.
  template <typename Record>
  [[nodiscard]] Record record(const char* key) const {
    return member(key, nlohmann::json::value_t::object).template get<Record>();
  }
  template <typename Record>
  [[nodiscard]] std::vector<Record> records(const char* key) const {
    return member(key, nlohmann::json::value_t::array).template get<std::vector<Record>>();
  }

private:
  [[nodiscard]] const nlohmann::json& member(const char* key) const;
  [[nodiscard]] const nlohmann::json& member(const char* key, nlohmann::json::value_t type) const;

  const nlohmann::json& object;
};

} // namespace velmor
