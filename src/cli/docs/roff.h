#pragma once

#include <string>
#include <string_view>

// Text for a manual page in man(7) roff.
namespace orv::cli::roff {

// Plain text safe on a roff line: backslashes and minus signs escaped, and a
// leading dot or quote kept from being read as a request.
std::string escape(std::string_view text);

// A usage line (a line of its own, or the rest of one) with options in bold and placeholders
// (upper-case words) in italics: "NAME --band BAND [--rows]".
std::string usage(std::string_view text);

} // namespace orv::cli::roff
