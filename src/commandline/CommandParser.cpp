#include "commandline/CommandParser.h"

#include <optional>
#include <sstream>
#include <utility>

#include <CLI/CLI.hpp>

namespace tonvane {

CommandOption& CommandOption::required() {
    option_->required();
    return *this;
}

CommandOption& CommandOption::range(int32_t low, int32_t high) {
    option_->check(CLI::Range(low, high));
    return *this;
}

CommandOption& CommandOption::notNegative() {
    const auto complaint = [](const std::string& word) -> std::string {
        double value = 0.0;
        const bool isNumber = CLI::detail::lexical_cast(word, value);
        return isNumber && value >= 0.0 ? "" : "Value " + word + " is no number from 0 on";
    };
    option_->check(complaint, "NONNEGATIVE");
    return *this;
}

CommandOption& CommandOption::fileName() {
    option_->check(
        [](const std::string& word) { return word.empty() ? "Expected the name of a file" : ""; },
        "FILE");
    return *this;
}

CommandOption& CommandOption::oneOf(const std::vector<std::string>& words) {
    option_->check(CLI::IsMember(words));
    return *this;
}

CommandOption& CommandOption::oneOf(const std::vector<int32_t>& numbers) {
    option_->check(CLI::IsMember(numbers));
    return *this;
}

CommandOption& CommandOption::showDefault() {
    option_->capture_default_str();
    return *this;
}

CommandOption& CommandOption::needs(const CommandOption& other) {
    option_->needs(other.option_);
    return *this;
}

CommandOption& CommandOption::separatedBy(char delimiter) {
    option_->delimiter(delimiter)->allow_extra_args(false);
    return *this;
}

void Command::takesValue(const std::string& names) {
    std::istringstream list(names);
    for (std::string name; std::getline(list, name, ',');) {
        shared_->namesWithValue.insert(name);
    }
}

template <class Value>
CommandOption Command::option(const std::string& names, Value& value, const std::string& help) {
    takesValue(names);
    return CommandOption(*app_->add_option(names, value, help));
}

// What a value can be.
template CommandOption Command::option(const std::string&, std::string&, const std::string&);
template CommandOption Command::option(const std::string&, int32_t&, const std::string&);
template CommandOption Command::option(const std::string&, uint16_t&, const std::string&);
template CommandOption Command::option(const std::string&, int64_t&, const std::string&);
template CommandOption Command::option(const std::string&, double&, const std::string&);
template CommandOption Command::option(const std::string&, std::optional<std::string>&,
                                       const std::string&);
template CommandOption Command::option(const std::string&, std::optional<int32_t>&,
                                       const std::string&);
template CommandOption Command::option(const std::string&, std::vector<std::string>&,
                                       const std::string&);

CommandOption Command::flag(const std::string& names, bool& value, const std::string& help) {
    return CommandOption(*app_->add_flag(names, value, help));
}

CommandOption Command::repeatable(const std::string& names, const std::string& wordName,
                                  std::function<std::string(const std::string&)> take,
                                  const std::string& help) {
    const auto takeAll = [names, take = std::move(take)](const std::vector<std::string>& words) {
        for (const std::string& word : words) {
            const std::string complaint = take(word);
            if (!complaint.empty()) {
                throw CLI::ValidationError(names, complaint);
            }
        }
        return true;
    };
    takesValue(names);
    CLI::Option* option = app_->add_option(names, CLI::callback_t(takeAll), help);
    option->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->type_name(wordName);
    return CommandOption(*option);
}

Command Command::exactlyOneOf(const std::string& groupName) {
    CLI::App* group = app_->add_option_group(groupName);
    group->require_option(1);
    return {*group, *shared_};
}

Command Command::subcommand(const std::string& name, const std::string& help) {
    app_->require_subcommand(1);
    return {*app_->add_subcommand(name, help), *shared_};
}

void Command::optionsAnywhere() {
    app_->fallthrough();  // subcommands take this over when they are made
}

void Command::footer(const std::string& text) {
    app_->footer(text);
}

void Command::action(std::function<void()> act) {
    app_->callback([shared = shared_, act = std::move(act)] { shared->chosen = act; });
}

struct CommandParser::State {
    explicit State(const std::string& description, const std::string& programName)
        : app(description, programName) {}

    // The parser would take one for the name of a group of options, and not come back.
    void refuseEmptyWords(const std::vector<std::string>& words) const {
        for (size_t i = 0; i < words.size(); ++i) {
            if (words[i].empty() && (i == 0 || !shared.namesWithValue.contains(words[i - 1]))) {
                throw CLI::ParseError("Expected a file or a value, got an empty argument",
                                      CLI::ExitCodes::ExtrasError);
            }
        }
    }

    CLI::App app;
    Shared shared;
};

CommandParser::CommandParser(std::unique_ptr<State> state)
    : Command(state->app, state->shared), state_(std::move(state)) {}

CommandParser::CommandParser(const std::string& description, const std::string& versionText,
                             const std::string& programName)
    : CommandParser(std::make_unique<State>(description, programName)) {
    if (!versionText.empty()) {
        state_->app.set_version_flag("--version", versionText);
    }
    state_->app.allow_windows_style_options(
        false);  // a word with a slash is a path on every system
}

CommandParser::~CommandParser() = default;

int CommandParser::run(const std::vector<std::string>& words) {
    try {
        state_->refuseEmptyWords(words);
        // The parser takes them from the end.
        state_->app.parse(std::vector<std::string>(words.rbegin(), words.rend()));
    } catch (const CLI::ParseError& error) {
        return state_->app.exit(error) == 0 ? 0 : badUsage;
    }
    if (state_->shared.chosen) {
        state_->shared.chosen();
    }
    return 0;
}

}  // namespace tonvane
