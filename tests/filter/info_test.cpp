#include "filter/info.h"

#include "filter/entry_points.h"

#include <gtest/gtest.h>

#include <array>
#include <cctype>
#include <cstring>
#include <string>

namespace {

struct Answer {
    std::uint16_t code;
    std::size_t width;
    std::uint32_t value;
};

constexpr Answer kNumbers[] = {
    {1, 2, 352},
    {2, 2, 3'976},
    {3, 2, 39'528},
    {4, 2, 400},
    {5, 2, 440},
    {6, 2, 16},
    {10, 2, 0},
    {11, 2, 0},
    {12, 4, 0x12345678},
    {13, 4, 0},
};

constexpr std::uint8_t kFiller = 0xA5;

/// What VwGetInfo answers, over a filled buffer.
struct Asked {
    explicit Asked(std::uint16_t code)
    {
        buffer.fill(kFiller);
        result = VwGetInfo(buffer.data(), code);
    }
    std::array<std::uint8_t, 64> buffer = {};
    std::uint16_t result = 0;
};

bool isUntouchedFrom(const Asked& asked, std::size_t first)
{
    for (std::size_t i = first; i < asked.buffer.size(); ++i) {
        if (asked.buffer[i] != kFiller)
            return false;
    }
    return true;
}

/// Whether the text has the form: A an upper-case letter, a a lower-case one, 9 a digit or, in
/// front of one, a blank; all else stands for itself.
bool hasForm(const Asked& asked, const char* form)
{
    const auto* text = reinterpret_cast<const char*>(asked.buffer.data());
    for (; *form != '\0'; ++form, ++text) {
        const int character = static_cast<unsigned char>(*text);
        const bool fits = *form == 'A' ? std::isupper(character) != 0
            : *form == 'a'             ? std::islower(character) != 0
            : *form == '9'             ? std::isdigit(character) != 0 || character == ' '
                                       : character == *form;
        if (!fits)
            return false;
    }
    return *text == '\0';
}

} // namespace

TEST(Info, AnswersEachNumberInItsWidth)
{
    for (const Answer& answer : kNumbers) {
        const Asked asked(answer.code);
        EXPECT_EQ(asked.result, 1) << answer.code;
        std::uint32_t value = 0;
        std::memcpy(&value, asked.buffer.data(), answer.width);
        EXPECT_EQ(value, answer.value) << answer.code;
        EXPECT_TRUE(isUntouchedFrom(asked, answer.width)) << answer.code;
    }
}

TEST(Info, ListsTheFileTypesInTableOrder)
{
    constexpr std::uint16_t kTypes[] = {1101, 1109, 1110, 1111, 1153, 1112, 1113, 1114, 1115, 1116,
        1117, 1147, 1148, 1149, 1182, 1181};
    const Asked asked(7);
    EXPECT_EQ(asked.result, 1);
    EXPECT_EQ(std::memcmp(asked.buffer.data(), kTypes, sizeof kTypes), 0);
    EXPECT_TRUE(isUntouchedFrom(asked, sizeof kTypes));
}

TEST(Info, TellsWhenItWasBuilt)
{
    const Asked date(8);
    EXPECT_EQ(date.result, 1);
    EXPECT_TRUE(isUntouchedFrom(date, 12));
    EXPECT_TRUE(hasForm(date, "Aaa 99 9999"));
    const Asked time(9);
    EXPECT_EQ(time.result, 1);
    EXPECT_TRUE(isUntouchedFrom(time, 9));
    EXPECT_TRUE(hasForm(time, "99:99:99"));
}

TEST(Info, UnknownCodesWriteNothing)
{
    for (const std::uint16_t code : {std::uint16_t{0}, std::uint16_t{14}, std::uint16_t{0xFFFF}}) {
        const Asked asked(code);
        EXPECT_EQ(asked.result, 0) << code;
        EXPECT_TRUE(isUntouchedFrom(asked, 0)) << code;
    }
}

TEST(Info, TheFirstFileTypeIsInternetHtml)
{
    EXPECT_EQ(firstFileType().id, 1101);
    EXPECT_EQ(firstFileType().kind, 120);
    EXPECT_STREQ(firstFileType().name, "Internet HTML");
}
