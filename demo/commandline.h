#pragma once

#include "demo/campaign.h"

#include <memory>
#include <optional>
#include <string>

namespace Demo {

struct Options {
    std::string folder; ///< in the user's encoding
    Campaign::Settings settings;
    bool isLegacy = false; ///< files of old instruments in place of the others
};

/// The command line of morvantide-demo, and its description in words.
class CommandLineParser {
public:
    CommandLineParser();
    ~CommandLineParser();

    /// Nothing where help, the version, or the fault of the words was due, which is printed; `exitStatus` is told then.
    std::optional<Options> parse(int argc, const char *const *argv, int *exitStatus);

    /// In roff.
    std::string manualPage() const;
    std::string bashCompletion() const;

private:
    struct State;
    std::unique_ptr<State> m_state;
};

} // namespace Demo
