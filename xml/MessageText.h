// How the reader and the writer word their errors: names and pieces of text quoted, cut
// short when long, and messages joined from parts.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace lumenor::xml {

// The text as a message quotes it: cut at a character boundary, with "...", when long.
std::string Quoted(std::string_view text);

std::string Joined(std::initializer_list<std::string_view> parts);

}  // namespace lumenor::xml
