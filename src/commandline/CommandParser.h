// What a program takes on its command line: commands, options and words, with their help.
//
// The parser behind this is a header that takes longer to compile than most programs; it is
// included in one source.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <vector>

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace tonvane {

// An option, a flag or a positional word of a command. A handle: the command keeps what it is set
// to.
class CommandOption {
  public:
    explicit CommandOption(CLI::Option& option) : option_(&option) {}

    CommandOption& required();

    // A whole number, `low` to `high`.
    CommandOption& range(int32_t low, int32_t high);

    // Any number that is not below 0.
    CommandOption& notNegative();

    // The name of a file: anything but an empty word.
    CommandOption& fileName();

    // One of these and nothing else.
    CommandOption& oneOf(const std::vector<std::string>& words);
    CommandOption& oneOf(const std::vector<int32_t>& numbers);

    // The help names the value that stands there now.
    CommandOption& showDefault();

    // Given only together with another option of the command.
    CommandOption& needs(const CommandOption& other);

    // Several values in one word, or the option several times, one word each.
    CommandOption& separatedBy(char delimiter);

  private:
    CLI::Option* option_;
};

// A command with its options, or the whole program. A handle, as above.
class Command {
  public:
    // An option for names such as "-o,--output", or a positional word for a name without dashes.
    // Parsing the command stores the value in `value`, which lives as long as the parser. A value
    // is a std::string, an int32_t, a uint16_t, an int64_t, a double, or a
    // std::optional<std::string> or std::optional<int32_t> for what need not be there; a
    // std::vector<std::string> takes all words up to the next option.
    template <class Value>
    CommandOption option(const std::string& names, Value& value, const std::string& help);

    CommandOption flag(const std::string& names, bool& value, const std::string& help);

    // An option that may be given several times. `take` gets each of its words and returns what is
    // wrong with it, or nothing; the help calls the words `wordName`.
    CommandOption repeatable(const std::string& names, const std::string& wordName,
                             std::function<std::string(const std::string&)> take,
                             const std::string& help);

    // A group of options and words of which exactly one must be given.
    Command exactlyOneOf(const std::string& groupName);

    // A command below this one; one of them must be given.
    Command subcommand(const std::string& name, const std::string& help);

    // The options of this command may stand behind its subcommands as well, those that are made
    // after this call.
    void optionsAnywhere();

    // The last lines of the help; without any those of the command above.
    void footer(const std::string& text);

    // What is done when this command was given.
    void action(std::function<void()> act);

  protected:
    // What the commands of a parser share.
    struct Shared {
        std::function<void()> chosen;
        std::set<std::string> namesWithValue;  // of options, with their dashes
    };
    Command(CLI::App& app, Shared& shared) : app_(&app), shared_(&shared) {}

  private:
    void takesValue(const std::string& names);

    CLI::App* app_;
    Shared* shared_;
};

// The command line of a program. --help, and --version if there is a text for it, are on it.
class CommandParser : public Command {
  public:
    static constexpr int badUsage = 2;

    // `programName` stands in the help as what is to be typed.
    explicit CommandParser(const std::string& description, const std::string& versionText = {},
                           const std::string& programName = {});
    ~CommandParser();
    CommandParser(const CommandParser&) = delete;
    CommandParser& operator=(const CommandParser&) = delete;

    // Parses the words behind the program's name and does what they ask for; what that throws goes
    // through. The exit code: 0, or badUsage after a line or two on standard error. An empty word
    // is bad usage but for the value of an option. Once only.
    int run(const std::vector<std::string>& words);

  private:
    struct State;
    explicit CommandParser(std::unique_ptr<State> state);

    std::unique_ptr<State> state_;
};

}  // namespace tonvane
