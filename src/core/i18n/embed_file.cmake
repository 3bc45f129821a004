# Script mode: writes OUTPUT, a C++ source that defines
# std::string_view orv::SYMBOL() returning the bytes of INPUT.
file(READ "${INPUT}" _hex HEX)
string(REGEX REPLACE "([0-9a-f][0-9a-f])" "0x\\1," _bytes "${_hex}")
string(REGEX REPLACE "((0x..,){24})" "\\1\n    " _bytes "${_bytes}")
get_filename_component(_name "${INPUT}" NAME)
file(WRITE "${OUTPUT}.tmp"
"// Generated from ${_name} at build time; do not edit.
#include <string_view>

namespace orv {
namespace {
const unsigned char kData[] = {
    ${_bytes}0x00};
} // namespace

std::string_view ${SYMBOL}() {
    return {reinterpret_cast<const char*>(kData), sizeof kData - 1};
}
} // namespace orv
")
file(RENAME "${OUTPUT}.tmp" "${OUTPUT}")
