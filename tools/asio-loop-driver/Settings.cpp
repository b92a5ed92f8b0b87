#include "Settings.h"

#include <cstdlib>
#include <map>
#include <sstream>

namespace tonvane::loop {

Settings ReadSettings() {
    Settings settings;
    const std::map<std::string, std::string*> texts{
        {"type", &settings.type}, {"fault", &settings.fault}, {"log", &settings.log}};
    const std::map<std::string, int32_t*> numbers{
        {"frames", &settings.frames}, {"channels", &settings.channels}, {"input", &settings.input},
        {"output", &settings.output}, {"rate", &settings.rate},         {"speed", &settings.speed},
        {"ready", &settings.ready}};
    const char* words = std::getenv("TONVANE_LOOP");
    std::istringstream stream(words == nullptr ? "" : words);
    for (std::string word; stream >> word;) {
        const size_t sign = word.find('=');
        const std::string name = word.substr(0, sign);
        const std::string value = sign == std::string::npos ? "" : word.substr(sign + 1);
        if (const auto text = texts.find(name); text != texts.end()) {
            *text->second = value;
        } else if (const auto number = numbers.find(name); number != numbers.end()) {
            *number->second = std::atoi(value.c_str());
        }
    }
    return settings;
}

}  // namespace tonvane::loop
