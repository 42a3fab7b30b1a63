#include "crate/sources/XmlStream.h"

#include "base/Text.h"

#include <libxml/xmlreader.h>

#include <fstream>

namespace velmor {

struct XmlStream::Input {
  std::ifstream file;
  std::size_t position = 0;
  std::size_t length = 0;
};

XmlStream::XmlStream(const std::filesystem::path& file)
    : input(std::make_unique<Input>()), reader(nullptr, &xmlFreeTextReader) {
  std::error_code unreadable;
  // Opening a pipe or a device may block for ever.
  if (std::filesystem::is_regular_file(file, unreadable)) input->file.open(file, std::ios::binary);
  if (!input->file.is_open()) throw XmlError("cannot be read");
  input->length = std::filesystem::file_size(file, unreadable);
  const auto read = [](void* context, char* buffer, int size) {
    auto& from = *static_cast<Input*>(context);
    from.file.read(buffer, size);
    const auto count = from.file.gcount();
    from.position += static_cast<std::size_t>(count);
    return static_cast<int>(count);
  };
  const auto close = [](void*) { return 0; };
  constexpr int quietly = XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;
  reader.reset(xmlReaderForIO(read, close, input.get(), nullptr, nullptr, quietly));
  if (!reader) throw XmlError("cannot be read");
}

XmlStream::~XmlStream() = default;

bool XmlStream::next() {
  for (;;) {
    const int result = xmlTextReaderRead(reader.get());
    if (result == 0) return false;
    if (result < 0) {
      throw XmlError("no more XML from line " +
                     std::to_string(xmlTextReaderGetParserLineNumber(reader.get())) + " on");
    }
    if (xmlTextReaderNodeType(reader.get()) == XML_READER_TYPE_ELEMENT) return true;
  }
}

int XmlStream::depth() const {
  return xmlTextReaderDepth(reader.get());
}

std::string_view XmlStream::name() const {
  return reinterpret_cast<const char*>(xmlTextReaderConstName(reader.get()));
}

std::string XmlStream::attribute(const char* name) const {
  const auto* const key = reinterpret_cast<const xmlChar*>(name);
  const std::unique_ptr<xmlChar, void (*)(void*)> value(
      xmlTextReaderGetAttribute(reader.get(), key), xmlFree);
  if (!value) return "";
  return std::string(text::trimmed(text::bounded(reinterpret_cast<const char*>(value.get()))));
}

std::size_t XmlStream::position() const {
  return input->position;
}

std::size_t XmlStream::length() const {
  return input->length;
}

} // namespace velmor
