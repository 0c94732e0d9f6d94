#pragma once
#include <string>

/// Texts of foreign files can look like the layout of main.xml, where texts stand without escapes; such a document
/// could not be saved. These change as little as makes them come back, and nothing in any other text.
namespace vldv::document::storable_text {

/// For the key of a text: a quote that would end it becomes an apostrophe.
std::string key(std::string text);
/// For a text or a name: a blank parts a closing tag from the line end behind it.
std::string content(std::string text);
/// For a label or a unit: a quote that would end the attribute becomes an apostrophe.
std::string attribute(std::string text);

} // namespace vldv::document::storable_text
