#include "host/cli/message.h"

#include <cstdio>

namespace host::cli {

std::string asOneLine(const std::string& text)
{
    std::string line;
    for (const char each : text) {
        const auto byte = static_cast<unsigned char>(each);
        if (byte == '\n' || byte == '\r') {
            line.push_back(' ');
        } else if (byte < 0x20 || byte == 0x7F) {
            line.push_back('?');
        } else if (byte >= 0x80 && byte <= 0x9F && line.ends_with('\xC2')) {
            // The controls above ASCII, in UTF-8.
            line.back() = '?';
        } else {
            line.push_back(each);
        }
    }
    return line;
}

void tellUser(const std::string& text)
{
    std::fprintf(stderr, "htmlfilter: %s\n", asOneLine(text).c_str());
}

} // namespace host::cli
