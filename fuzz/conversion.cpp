// Whole conversions: the first bytes choose the file type, the character set and when the host
// stops, the rest is the document. Nothing may crash, leak or go on for ever.

#include "filter/entry_points.h"
#include "tests/common/document_run.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace {

constexpr std::size_t kChoices = 3;

constexpr std::uint16_t kFileTypes[] = {
    1101, 1109, 1110, 1111, 1153, 1112, 1113, 1114, 1115, 1116, 1117, 1147, 1148, 1149, 1182, 1181};
constexpr std::uint32_t kCharSets[] = {0, 0xB000B, 0xB000D, 0xB000E, 0xB000F, 0x14B00001,
    0x14B00002, 0x13A40000, 0x13A80000, 0x14E30100, 0xF050000, 0x15510000};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size < kChoices)
        return 0;
    const std::string_view content(reinterpret_cast<const char*>(data) + kChoices, size - kChoices);
    testing_support::DocumentRun run(content);
    run.host->stopEvery = data[2];
    run.record.requestedCharSetId = kCharSets[data[1] % std::size(kCharSets)];
    run.run(kFileTypes[data[0] % std::size(kFileTypes)]);
    return 0;
}
