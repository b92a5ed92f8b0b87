#include "app/LinkArguments.h"

#include <map>
#include <memory>

#include "files/InputError.h"
#include "files/TextScanner.h"

namespace tonvane {

namespace {

// Where the parser puts the arguments of all subcommands.
struct Arguments {
    LinkOptions link;
    std::string reg;
    std::vector<std::string> words;
    std::string path;
    std::string frequency;
    std::string which;
    DrcSettings drc;
    int32_t sampleRate = 48000;
    int32_t intervalMs = 1000;
    int32_t rounds = 0;
};

using Values = std::shared_ptr<Arguments>;

// Nothing for "off".
std::optional<int32_t> frequencyOf(const std::string& text) {
    if (text == "off") {
        return std::nullopt;
    }
    TextScanner scanner(text);
    const auto hz = scanner.integer();
    if (!hz || !scanner.atEnd()) {
        throw InputError(text, "expected a frequency in whole Hz, or off");
    }
    return hz;
}

void addRegisterCommands(CLI::App& link, const Values& values, std::function<void()>& run) {
    CLI::App* read = link.add_subcommand("read", "Print a register's contents");
    read->add_option("register", values->reg, "Hexadecimal number or name")->required();
    read->callback([&run, values] { run = [=] { ReadCommand(values->link, values->reg); }; });

    CLI::App* write = link.add_subcommand("write", "Write a register, whether or not audio runs");
    write->add_option("register", values->reg, "Hexadecimal number or name")->required();
    write->add_option("words", values->words, "All of its words in hexadecimal")->required();
    write->callback(
        [&run, values] { run = [=] { WriteCommand(values->link, values->reg, values->words); }; });

    CLI::App* dump = link.add_subcommand("dump", "Write all registers to a file");
    dump->add_option("file", values->path, "Register dump to write")->required();
    dump->callback([&run, values] { run = [=] { DumpCommand(values->link, values->path); }; });

    CLI::App* watch = link.add_subcommand("watch", "Print registers whenever they change");
    watch->add_option("--interval", values->intervalMs, "Milliseconds between two looks")
        ->check(CLI::Range(0, 3600000))
        ->capture_default_str();
    watch->add_option("--rounds", values->rounds, "Looks after the first, 0 for without end")
        ->check(CLI::NonNegativeNumber)
        ->capture_default_str();
    watch->callback([&run, values] {
        run = [=] { WatchCommand(values->link, values->intervalMs, values->rounds); };
    });
}

void addRate(CLI::App& command, const Values& values) {
    command.add_option("--rate", values->sampleRate, "The amplifier's sample rate in Hz")
        ->capture_default_str();
}

void addGroupCommands(CLI::App& link, const Values& values, std::function<void()>& run) {
    CLI::App* preset = link.add_subcommand(
        "preset", "Write the start values; equalizer, crossover and DRCs are off then");
    preset->callback([&run, values] { run = [=] { PresetCommand(values->link); }; });

    CLI::App* program = link.add_subcommand(
        "program", "Write a filter file's sections to the registers that it names, and compare");
    program->add_option("filters", values->path, "Filter file")->required();
    program->callback(
        [&run, values] { run = [=] { ProgramCommand(values->link, values->path); }; });

    CLI::App* crossover =
        link.add_subcommand("crossover", "Split into two bands at a frequency, or off");
    crossover->add_option("frequency", values->frequency, "Hz, or off")->required();
    addRate(*crossover, values);
    crossover->callback([&run, values] {
        run = [=] {
            CrossoverCommand(values->link, frequencyOf(values->frequency), values->sampleRate);
        };
    });

    CLI::App* drc = link.add_subcommand("drc", "Switch the dynamic range compressors");
    drc->add_option("which", values->which, "The one that is to be on: off, 1, 2 or both")
        ->required()
        ->check(CLI::IsMember({"off", "1", "2", "both"}));
    drc->add_option("--threshold", values->drc.thresholdDb, "dB, -48 to 12")
        ->check(CLI::Range(-48, 12))
        ->capture_default_str();
    const std::map<std::string, int32_t*> times{{"--alpha", &values->drc.alphaMs},
                                                {"--attack", &values->drc.attackMs},
                                                {"--release", &values->drc.releaseMs}};
    for (const auto& [name, value] : times) {
        drc->add_option(name, *value, "ms, 1 to 5000")
            ->check(CLI::Range(1, 5000))
            ->capture_default_str();
    }
    addRate(*drc, values);
    drc->callback([&run, values] {
        run = [=] {
            const bool both = values->which == "both";
            DrcCommand(values->link, {both || values->which == "1", both || values->which == "2"},
                       values->drc, values->sampleRate);
        };
    });
}

}  // namespace

void AddLinkOptions(CLI::App& command, LinkOptions& options) {
    command.add_option("--port", options.port, "Port of the link server on this computer")
        ->capture_default_str();
    command
        .add_option("--timeout", options.timeLimitMs,
                    "Milliseconds that the server may take to answer")
        ->check(CLI::Range(1, 3600000))
        ->capture_default_str();
}

void AddLinkCommand(CLI::App& app, std::function<void()>& run) {
    const Values values = std::make_shared<Arguments>();
    CLI::App* link = app.add_subcommand("link", "Look at the amplifier's registers, program them");
    link->require_subcommand(1);
    link->fallthrough();
    AddLinkOptions(*link, values->link);
    link->add_flag("--dry-run", values->link.dryRun, "Print what would be sent, and send nothing");
    addRegisterCommands(*link, values, run);
    addGroupCommands(*link, values, run);
    for (CLI::App* command : link->get_subcommands({})) {
        command->fallthrough();
    }
    link->footer("Example: tonvane-cli link program filters.txt --port 20000");
}

}  // namespace tonvane
