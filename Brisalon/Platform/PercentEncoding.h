#pragma once

#include <string>
#include <string_view>

namespace brisalon {

/// A path's bytes as they stand in a URL: letters, digits, "-_.!~*'()" and the
/// slash as they are, every other byte as "%" and two hexadecimal digits (RFC 2396,
/// section 2). Reversible for any bytes.
std::string percentEncoded(std::string_view path);

} // namespace brisalon
