#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>

struct _xmlTextReader;

namespace velmor {

/// The file cannot be read, or is no XML from some line on; a few words, without a full stop.
class XmlError : public std::runtime_error {
public:
  using std::runtime_error::runtime_error;
};

/// Goes through an XML file once, from element to element, and holds no more than one of them:
/// files may be of any length. Nothing but the file itself is read. One thread.
class XmlStream {
public:
  /// Throws XmlError.
  explicit XmlStream(const std::filesystem::path& file);
  XmlStream(const XmlStream&) = delete;
  XmlStream& operator=(const XmlStream&) = delete;
  ~XmlStream();

  /// Goes to the beginning of the next element; false behind the last one. Throws XmlError.
  [[nodiscard]] bool next();

  /// 0 for the root.
  [[nodiscard]] int depth() const;
  [[nodiscard]] std::string_view name() const;
  /// Trimmed; "" when the element has no such attribute.
  [[nodiscard]] std::string attribute(const char* name) const;

  /// How many bytes have been read, and how many there are.
  [[nodiscard]] std::size_t position() const;
  [[nodiscard]] std::size_t length() const;

private:
  struct Input;

  std::unique_ptr<Input> input;
  std::unique_ptr<_xmlTextReader, void (*)(_xmlTextReader*)> reader;
};

} // namespace velmor
