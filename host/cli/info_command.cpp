#include "host/charset_table.h"
#include "host/cli/command.h"
#include "host/cli/errors.h"
#include "host/cli/module_path.h"
#include "host/cli/numbers.h"
#include "host/cli/output_file.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <cstring>

namespace host::cli {

namespace {

    enum class AnswerForm { Word16, Word32, Text };

    struct InfoRow {
        std::uint16_t code;
        AnswerForm form;
        const char* meaning;
    };

    constexpr auto kInfoRows = std::to_array<InfoRow>({
        {INFO_SAVE_BLOCK_SIZE, AnswerForm::Word16, "bytes of a saved position"},
        {INFO_CONTEXT_SIZE, AnswerForm::Word16, "bytes of a context in front of the routines"},
        {3, AnswerForm::Word16, "constant of the interface generation"},
        {4, AnswerForm::Word16, "constant of the interface generation"},
        {5, AnswerForm::Word16, "constant of the interface generation"},
        {INFO_FILE_TYPE_COUNT, AnswerForm::Word16, "number of file types, told by code 7"},
        {INFO_BUILD_DATE, AnswerForm::Text, "build date"},
        {INFO_BUILD_TIME, AnswerForm::Text, "build time"},
        {10, AnswerForm::Word16, "reserved"},
        {11, AnswerForm::Word16, "reserved"},
        {INFO_BYTE_ORDER, AnswerForm::Word32, "byte order probe"},
        {13, AnswerForm::Word32, "reserved"},
    });

    struct FileTypeName {
        std::uint16_t fileType;
        const char* name;
    };

    constexpr auto kFileTypeNames = std::to_array<FileTypeName>({
        {1101, "Internet HTML"},
        {1109, "HTML - Central European"},
        {1110, "HTML - Japanese ShiftJIS"},
        {1111, "HTML - Japanese EUC"},
        {1153, "HTML - Japanese JIS"},
        {1112, "HTML - Chinese Big5"},
        {1113, "HTML - Chinese EUC"},
        {1114, "HTML - Chinese GB"},
        {1115, "HTML - Korean Hangul"},
        {1116, "HTML - Cyrillic (Ansi 1251)"},
        {1117, "HTML - Cyrillic (KOI8-R)"},
        {1147, "Word 2000 Save As... HTML"},
        {1148, "Excel 2000 Save As... HTML"},
        {1149, "PowerPoint 2000 Save As... HTML"},
        {1182, "XML with Doctype HTML"},
        {1181, "Internet HTML"},
    });

    std::string nameOfFileType(std::uint16_t fileType)
    {
        const auto row = std::find_if(kFileTypeNames.begin(), kFileTypeNames.end(),
            [fileType](const FileTypeName& each) { return each.fileType == fileType; });
        return row == kFileTypeNames.end() ? "" : row->name;
    }

    std::string answerOf(const Module& module, const InfoRow& row)
    {
        char buffer[256] = {};
        if (!module.info(buffer, row.code))
            return "not answered";
        std::uint16_t word16 = 0;
        std::uint32_t word32 = 0;
        switch (row.form) {
        case AnswerForm::Word16:
            std::memcpy(&word16, buffer, sizeof word16);
            return std::to_string(word16);

        case AnswerForm::Word32:
            std::memcpy(&word32, buffer, sizeof word32);
            return hexadecimal(word32);

        case AnswerForm::Text:
            break;
        }
        buffer[sizeof buffer - 1] = '\0';
        return buffer;
    }

    std::string padded(std::string text, std::size_t width)
    {
        text.resize(std::max(width, text.size()), ' ');
        return text;
    }

    void appendCharsets(std::string& text, CharsetUse use)
    {
        for (const CharsetRow& row : charsetTable()) {
            if (row.use == use)
                text += "  " + hexadecimal(row.id) + "  " + row.name + "\n";
        }
    }

    std::string report(const Module& module)
    {
        std::string text = "Module: " + module.path() + "\n\nVwGetInfo:\n";
        for (const InfoRow& row : kInfoRows)
            text += "  " + padded(std::to_string(row.code), 4) + padded(answerOf(module, row), 14)
                + row.meaning + "\n";
        text += "\nFile types (--file-type):\n";
        for (const std::uint16_t fileType : module.fileTypes())
            text += "  " + padded(std::to_string(fileType), 6) + nameOfFileType(fileType) + "\n";
        text += "\nCharacter sets (--charset):\n";
        appendCharsets(text, CharsetUse::Document);
        text += "\nText is turned into UTF-8 under all of these, and under the states:\n";
        appendCharsets(text, CharsetUse::TextOnly);
        return text;
    }

    class InfoCommand : public Command {
    public:
        explicit InfoCommand(CLI::App& program)
        {
            app_ = program.add_subcommand("info",
                "What the module answers about itself, its file types, and\n"
                "the character sets to read by and to turn into UTF-8.\n  htmlfilter info");
        }

        int run(const Switches& switches) override
        {
            const Module module(findModule(switches.modulePath));
            checkSwitches(switches, module);
            OutputFile output("");
            output.write(report(module));
            return EXIT_CODE_DONE;
        }
    };

} // namespace

std::unique_ptr<Command> makeInfoCommand(CLI::App& program)
{
    return std::make_unique<InfoCommand>(program);
}

} // namespace host::cli
