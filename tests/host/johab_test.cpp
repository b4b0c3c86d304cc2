#include "host/johab.h"

#include <gtest/gtest.h>

namespace {

using host::decodeJohab;

TEST(Johab, HoldsAllSyllablesInOrder)
{
    char16_t next = 0xAC00;
    for (std::uint32_t code = 0x8400; code <= 0xD3FF; ++code) {
        const auto decoded = decodeJohab(static_cast<std::uint16_t>(code));
        EXPECT_EQ(decoded.wansung, 0);
        if (decoded.unit < 0xAC00)
            continue;
        EXPECT_EQ(decoded.unit, next) << std::hex << code;
        EXPECT_TRUE(host::isJohabLead(code >> 8));
        EXPECT_TRUE(host::isJohabTrail(code & 0xFF));
        ++next;
    }
    EXPECT_EQ(next, 0xD7A4);
}

TEST(Johab, DecodesLettersAndSigns)
{
    const struct {
        std::uint16_t code;
        char16_t unit;
        std::uint16_t wansung;
    } rows[] = {
        {0x8861, 0xAC00, 0},
        {0x99B1, 0xB620, 0},
        {0xD3BD, 0xD7A3, 0},
        {0x8841, 0x3131, 0},
        {0xD041, 0x314E, 0},
        {0x8461, 0x314F, 0},
        {0x87A1, 0x3163, 0},
        {0x8444, 0x3133, 0},
        {0x8450, 0x3140, 0},
        {0x8454, 0x3144, 0},
        {0x8441, 0, 0},
        {0x8452, 0, 0},
        {0x8401, 0, 0},
        {0x8842, 0, 0},
        {0xD931, 0, 0xA1A1},
        {0xD932, 0, 0xA1A2},
        {0xD969, 0, 0xA1D9},
        {0xD991, 0, 0xA1EF},
        {0xD9A1, 0, 0xA2A1},
        {0xDE31, 0, 0xABA1},
        {0xE031, 0, 0xCAA1},
        {0xF7D3, 0, 0xF9D3},
        {0xF9FE, 0, 0xFDFE},
        {0xD831, 0, 0},
        {0xD97F, 0, 0},
        {0xDF31, 0, 0},
        {0xFA31, 0, 0},
        {0x7F31, 0, 0},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(decodeJohab(row.code).unit, row.unit) << std::hex << row.code;
        EXPECT_EQ(decodeJohab(row.code).wansung, row.wansung) << std::hex << row.code;
    }
}

TEST(Johab, KnowsLeadAndTrailBytes)
{
    const struct {
        std::uint32_t byte;
        bool lead;
        bool trail;
    } rows[] = {
        {0x30, false, false},
        {0x31, false, true},
        {0x7E, false, true},
        {0x7F, false, false},
        {0x80, false, false},
        {0x83, false, true},
        {0x84, true, true},
        {0xD3, true, true},
        {0xD4, false, true},
        {0xD8, true, true},
        {0xDE, true, true},
        {0xDF, false, true},
        {0xE0, true, true},
        {0xF9, true, true},
        {0xFA, false, true},
        {0xFE, false, true},
        {0xFF, false, false},
        {0x8861, false, false},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(host::isJohabLead(row.byte), row.lead) << std::hex << row.byte;
        EXPECT_EQ(host::isJohabTrail(row.byte), row.trail) << std::hex << row.byte;
    }
}

} // namespace
