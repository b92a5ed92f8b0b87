#include "files/AddressConfig.h"

#include "platform/FileAccess.h"
#include "text/Ascii.h"
#include "text/TextScanner.h"

namespace tonvane {

namespace {

bool isLetter(int c) {
    const int lower = c | 0x20;
    return lower >= 'a' && lower <= 'z';
}

// One attempt at the present position; what was read stays consumed.
bool findKey(TextScanner& scanner, std::string_view key) {
    int c = scanner.next();
    while (c >= 0 && !isLetter(c)) {
        c = scanner.next();
    }
    if (c < 0) {
        return false;
    }
    if (!IsSameWord(scanner.lineFragment(key.size() - 1), key.substr(1))) {
        return false;
    }
    while (c >= 0 && c != '=') {
        c = scanner.next();
    }
    return c == '=';
}

}  // namespace

int32_t ParseRegisterAddresses(std::string_view text, RegisterAddressConfig& config) {
    config = RegisterAddressConfig();
    TextScanner scanner(text);
    int32_t found = 0;
    if (findKey(scanner, "address")) {
        ++found;
        bool more = true;
        for (size_t i = 0; more && i < config.addresses.size(); ++i) {
            const auto number = scanner.hexadecimal();
            config.addresses[i] = number.value_or(config.addresses[i]);
            more = number && (i + 1 == config.addresses.size() || scanner.literal(','));
        }
    }
    if (findKey(scanner, "output_format")) {
        ++found;
        const int32_t format = scanner.integer().value_or(config.outputFormat);
        if (format == 4 || format == 20) {
            config.outputFormat = format;
        }
    }
    return found;
}

int32_t LoadRegisterAddressConfig(const std::string& folder, RegisterAddressConfig& config,
                                  ReadFault* fault) {
    const auto text = ReadTextFile(folder + RegisterAddressConfig::fileName, fault);
    return ParseRegisterAddresses(text.value_or(""), config);
}

}  // namespace tonvane
