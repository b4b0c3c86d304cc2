#include "filter/info.h"

#include "filter/entry_points.h"

#include <array>
#include <cstring>

#ifndef HTMLFILTER_BUILD_DATE
#define HTMLFILTER_BUILD_DATE __DATE__
#define HTMLFILTER_BUILD_TIME __TIME__
#endif

namespace {

constexpr std::array<FileType, 16> kFileTypes = {{
    {1101, kFileTypeKind, "Internet HTML"},
    {1109, kFileTypeKind, "HTML - Central European"},
    {1110, kFileTypeKind, "HTML - Japanese ShiftJIS"},
    {1111, kFileTypeKind, "HTML - Japanese EUC"},
    {1153, kFileTypeKind, "HTML - Japanese JIS"},
    {1112, kFileTypeKind, "HTML - Chinese Big5"},
    {1113, kFileTypeKind, "HTML - Chinese EUC"},
    {1114, kFileTypeKind, "HTML - Chinese GB"},
    {1115, kFileTypeKind, "HTML - Korean Hangul"},
    {1116, kFileTypeKind, "HTML - Cyrillic (Ansi 1251)"},
    {1117, kFileTypeKind, "HTML - Cyrillic (KOI8-R)"},
    {1147, kFileTypeKind, "Word 2000 Save As... HTML"},
    {1148, kFileTypeKind, "Excel 2000 Save As... HTML"},
    {1149, kFileTypeKind, "PowerPoint 2000 Save As... HTML"},
    {1182, kFileTypeKind, "XML with Doctype HTML"},
    {1181, kFileTypeKind, "Internet HTML"},
}};

constexpr char kBuildDate[] = HTMLFILTER_BUILD_DATE;
constexpr char kBuildTime[] = HTMLFILTER_BUILD_TIME;
static_assert(sizeof(kBuildDate) == 12);
static_assert(sizeof(kBuildTime) == 9);

// Constants of the host's interface generation; their meaning lies in the host.
constexpr std::uint16_t kGenerationConstant3 = 39'528;
constexpr std::uint16_t kGenerationConstant4 = 400;
constexpr std::uint16_t kGenerationConstant5 = 440;

template <class Number> std::uint16_t answer(void* result, Number number)
{
    std::memcpy(result, &number, sizeof(number));
    return 1;
}

std::uint16_t answerWord(void* result, std::uint16_t number) { return answer(result, number); }

std::uint16_t answerFileTypes(void* result)
{
    auto* out = static_cast<unsigned char*>(result);
    for (const FileType& type : kFileTypes) {
        std::memcpy(out, &type.id, sizeof(type.id));
        out += sizeof(type.id);
    }
    return 1;
}

std::uint16_t answerText(void* result, const char* text, std::size_t size)
{
    std::memcpy(result, text, size);
    return 1;
}

} // namespace

const FileType& firstFileType() { return kFileTypes.front(); }

std::uint16_t VwGetInfo(void* result, std::uint16_t code)
{
    switch (code) {
    case INFO_SAVE_BLOCK_SIZE:
        return answerWord(result, kSaveBlockSize);
    case INFO_CONTEXT_SIZE:
        return answerWord(result, kDocumentStateEnd);
    case 3:
        return answerWord(result, kGenerationConstant3);
    case 4:
        return answerWord(result, kGenerationConstant4);
    case 5:
        return answerWord(result, kGenerationConstant5);
    case INFO_FILE_TYPE_COUNT:
        return answerWord(result, kFileTypes.size());
    case INFO_FILE_TYPES:
        return answerFileTypes(result);
    case INFO_BUILD_DATE:
        return answerText(result, kBuildDate, sizeof(kBuildDate));
    case INFO_BUILD_TIME:
        return answerText(result, kBuildTime, sizeof(kBuildTime));
    case 10:
    case 11:
        return answerWord(result, 0);
    case INFO_BYTE_ORDER:
        return answer(result, std::uint32_t{INFO_BYTE_ORDER_PROBE});
    case 13:
        return answer(result, std::uint32_t{0});
    }
    return 0;
}
