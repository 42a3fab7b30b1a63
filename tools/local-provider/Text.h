#pragma once

#include <string>
#include <string_view>

namespace velmor::tools {

/// The text without white space and line breaks (Unicode's) at its ends.
std::string trimmed(std::string_view text);

/// A form of the text for comparisons: trimmed, with Unicode's case folding and
/// compatibility normalisation. Never for display.
std::string folded(std::string_view text);

/// The folded title without what follows it in brackets or after " - ", such as
/// "(Radio Edit)" or " - Remastered": two versions of a song share it.
std::string foldedBaseTitle(std::string_view title);

} // namespace velmor::tools
