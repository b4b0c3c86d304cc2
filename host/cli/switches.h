#pragma once

#include "host/module.h"
#include "host/session.h"

#include <string>
#include <vector>

namespace CLI {
class App;
class Validator;
}

namespace host::cli {

/// The heading of the shared switches in the help.
constexpr char kSwitchGroup[] = "Common switches (numbers are decimal or 0x hexadecimal)";

/// What the switches that all subcommands share say.
struct Switches {
    ConversionOptions conversion = {};
    std::vector<OptionValue> globalOptions = {};
    std::string modulePath = {}; ///< empty for the module in its usual place
};

/// Adds the shared switches; parsing them fills `switches`, which must live as long as `app`.
void addSwitches(CLI::App& app, Switches& switches);

/// Adds those of them that tell how a document is to be read, and neither of module nor of pauses.
void addReadingSwitches(CLI::App& app, Switches& switches);

/// A check of names of files: an empty one is none.
CLI::Validator notEmpty();

/// Throws BadUse when the file type is none of the module's or no documents are read by the
/// character set.
void checkSwitches(const Switches& switches, const Module& module);

/// Throws BadUse when no documents are read by the character set.
void checkCharset(const Switches& switches);

} // namespace host::cli
