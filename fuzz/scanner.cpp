// The scanner over any bytes in any character set: the first byte chooses the set, the second the
// size of the stream's buffer.

#include "input/char_reader.h"
#include "scanner/markup_scanner.h"
#include "tests/common/test_context.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string_view>

namespace {

constexpr std::size_t kChoices = 2;

constexpr std::uint16_t kCharSets[] = {0x9000, 0x3027, 0x2004, 0x2005, 0x2006, 0x2008, 0x2009,
    0x402B, 0x4003, 0x201D, 0x202C, 0x2029, 0x8001, 0};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < kChoices)
        return 0;
    const std::string_view content(reinterpret_cast<const char*>(data) + kChoices, size - kChoices);
    testing_support::TestContext test(
        content, kCharSets[data[0] % std::size(kCharSets)], data[1] + 1u);
    test.makeTokenBuffer();
    Token token = {};
    while (test.context.statusFlags == 0)
        Scan(token, test.context.tokenBuffer, kTokenLimit, test.context);
    return 0;
}
