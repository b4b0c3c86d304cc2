#include "host/cli/switches.h"

#include "host/charset_table.h"
#include "host/cli/errors.h"
#include "host/cli/numbers.h"

#include <CLI/CLI.hpp>

#include <functional>

namespace host::cli {

namespace {

    constexpr std::uint32_t kMostFileTypes = 0xFFFF;

    /// Adds a switch of one number up to `most`.
    CLI::Option* addNumber(CLI::App& app, const std::string& name, std::uint32_t most,
        std::function<void(std::uint32_t)> store, const std::string& description)
    {
        const auto take = [name, most, store = std::move(store)](const std::string& text) {
            const auto number = parseNumber(text);
            if (!number || *number > most)
                throw CLI::ValidationError(name,
                    "'" + text + "' is no number up to " + std::to_string(most)
                        + ", decimal or 0x hexadecimal");
            store(*number);
        };
        return app.add_option_function<std::string>(name, take, description);
    }

    /// Adds a switch of ID=VALUE that may be given many times.
    CLI::Option* addOptionValues(CLI::App& app, const std::string& name,
        std::vector<OptionValue>& values, const std::string& description)
    {
        const auto take = [name, &values](const std::vector<std::string>& texts) {
            for (const std::string& text : texts) {
                const auto value = parseOptionValue(text);
                if (!value)
                    throw CLI::ValidationError(
                        name, "'" + text + "' is not ID=VALUE with two numbers");
                values.push_back(*value);
            }
        };
        return app.add_option_function<std::vector<std::string>>(name, take, description)
            ->allow_extra_args(false)
            ->type_name("ID=VALUE");
    }

} // namespace

void addReadingSwitches(CLI::App& app, Switches& switches)
{
    ConversionOptions& conversion = switches.conversion;
    const std::string group = kSwitchGroup;
    addNumber(
        app, "--file-type", kMostFileTypes,
        [&conversion](
            std::uint32_t number) { conversion.fileType = static_cast<std::uint16_t>(number); },
        "File type to read by, 1101 when not given;\n"
        "'htmlfilter info' lists them. Japanese Shift-JIS:\n  --file-type 1110")
        ->type_name("ID")
        ->group(group);
    addNumber(
        app, "--charset", UINT32_MAX,
        [&conversion](std::uint32_t number) { conversion.charSetId = number; },
        "Character set to read by, 0 for the document's own;\n"
        "'htmlfilter info' lists them. Windows-1251:\n  --charset 0x14E30100")
        ->type_name("ID")
        ->group(group);
    addNumber(
        app, "--flags", UINT32_MAX,
        [&conversion](std::uint32_t number) { conversion.openFlags = number; },
        "Open flags: 0x80 delivers metadata packets as objects,\n"
        "0x100 as document properties:\n  --flags 0x100")
        ->type_name("N")
        ->group(group);
    addOptionValues(app, "--option", switches.globalOptions,
        "Sets an option of the engine; may be repeated.\n"
        "A read buffer of 64 KiB:\n  --option 112=64")
        ->group(group);
    addOptionValues(app, "--doc-option", conversion.documentOptions,
        "Sets an option of the document; may be repeated.\n"
        "Tables as plain paragraphs:\n  --doc-option 0x52B6A=1")
        ->group(group);
}

void addSwitches(CLI::App& app, Switches& switches)
{
    addReadingSwitches(app, switches);
    ConversionOptions& conversion = switches.conversion;
    const std::string group = kSwitchGroup;
    addNumber(
        app, "--stop", UINT32_MAX,
        [&conversion](std::uint32_t number) { conversion.stopEvery = number; },
        "Asks the filter to pause at every N-th break, 0 never.\n"
        "At each break:\n  --stop 1")
        ->type_name("N")
        ->group(group);
    app.add_option("--module", switches.modulePath,
           "Filter module to load, instead of htmlfilter.so beside\n"
           "the program or in ../lib/htmlfilter:\n  --module build/debug/htmlfilter.so")
        ->check(notEmpty())
        ->type_name("PATH")
        ->group(group);
}

CLI::Validator notEmpty()
{
    return CLI::Validator(
        [](std::string& name) { return name.empty() ? "the name is empty" : std::string(); }, "");
}

void checkSwitches(const Switches& switches, const Module& module)
{
    const ConversionOptions& conversion = switches.conversion;
    if (!module.acceptsFileType(conversion.fileType))
        throw BadUse("--file-type: the module has no file type "
            + std::to_string(conversion.fileType) + "; 'htmlfilter info' lists them");
    checkCharset(switches);
}

void checkCharset(const Switches& switches)
{
    const std::uint32_t id = switches.conversion.charSetId;
    if (id != 0 && !readsDocumentsBy(id))
        throw BadUse("--charset: no document is read by the character set " + hexadecimal(id)
            + "; 'htmlfilter info' lists them");
}

} // namespace host::cli
