#include "app/ConvertArguments.h"

#include <memory>

#include "app/ConvertCommand.h"

namespace tonvane {

namespace {

std::string kindList() {
    std::string list;
    for (const std::string& name : ExportKindNames()) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

}  // namespace

void AddInputOptions(CLI::App& command, std::optional<int32_t>& channel, bool& strict) {
    command.add_option("--channel", channel, "Channel of a wave file, from 1");
    command.add_flag("--strict", strict, "Refuse a response where something has to be guessed");
}

void AddExportOption(CLI::App& command, std::vector<Export>& exports) {
    const auto take = [&exports](const std::vector<std::string>& texts) {
        for (const std::string& text : texts) {
            const auto wanted = ParseExport(text);
            if (!wanted) {
                throw CLI::ValidationError("--export", "expected KIND=FILE with a kind of " +
                                                           kindList() + "; found " + text);
            }
            exports.push_back(*wanted);
        }
        return true;
    };
    command
        .add_option("--export", CLI::callback_t(take),
                    "KIND=FILE, the result for another program: " + kindList())
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll)
        ->type_name("KIND=FILE");
}

void AddConvertCommand(CLI::App& app, std::function<void()>& run) {
    struct Values {
        ConvertOptions options;
        std::string kind;
    };
    const auto values = std::make_shared<Values>();
    ConvertOptions& options = values->options;
    CLI::App* convert = app.add_subcommand(
        "convert", "Convert a response, or export a filter file for another program");
    convert->add_option("input", options.input.path, "Response or filter file")->required();
    convert->add_option("output", options.output, "File to write; its extension says what")
        ->required();
    convert->add_option(
        "--rate", options.input.rate,
        "Sample rate in Hz: of raw samples, of the use of a table, of a filter file");
    convert->add_option("--kind", values->kind, "What a filter file becomes")
        ->check(CLI::IsMember(ExportKindNames()));
    AddInputOptions(*convert, options.input.channel, options.input.strict);
    convert->callback([&run, values] {
        run = [values] {
            values->options.kind = ParseExportKind(values->kind);
            RunConvertCommand(values->options);
        };
    });
    convert->footer("Example: tonvane-cli convert filters.txt eq.yml --rate 48000");
}

}  // namespace tonvane
