#include "host/cli/message.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Message, IsOneLineWithoutControls)
{
    for (int byte = 0; byte < 0x80; ++byte) {
        const char each = static_cast<char>(byte);
        std::string wanted(1, each);
        if (each == '\n' || each == '\r')
            wanted = " ";
        else if (byte < 0x20 || byte == 0x7F)
            wanted = "?";
        EXPECT_EQ(host::cli::asOneLine(std::string(1, each)), wanted) << byte;
    }
    EXPECT_EQ(host::cli::asOneLine("a\033[31mb\x07"), "a?[31mb?");
    EXPECT_EQ(host::cli::asOneLine("\xC2\x9B"
                                   "1m\xC2\x80\xC2\x9F"),
        "?1m??");
    EXPECT_EQ(host::cli::asOneLine("é\u00A0漢😀"), "é\u00A0漢😀");
    EXPECT_EQ(host::cli::asOneLine("\x9B\xE9"), "\x9B\xE9");
    EXPECT_EQ(host::cli::asOneLine(""), "");
}

TEST(Message, NamesTheProgram)
{
    testing::internal::CaptureStderr();
    host::cli::tellUser("cannot read 'a\nb'");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "htmlfilter: cannot read 'a b'\n");
}

} // namespace
