// The name of a view preset loses the number of a copy and nothing else: what is cut is what the
// pattern "^(.+ · .+) [0-9]+$" says, tried at every place where it could match.
#include <algorithm>

#include "QuorvaFinderExtension/FinderViewPresetSettings.hpp"
#include "Tests/Fuzz/FuzzedMachine.hpp"

namespace quorva {
namespace {

bool isOnOneLine(std::string_view text) {
    for (const std::string_view terminator :
         {"\n", "\v", "\f", "\r", "\u0085", "\u2028", "\u2029"}) {
        if (text.contains(terminator)) {
            return false;
        }
    }
    return true;
}

bool isDigits(std::string_view text) {
    return !text.empty() &&
           std::ranges::all_of(text, [](char digit) { return digit >= '0' && digit <= '9'; });
}

bool hasTwoHalves(std::string_view text) {
    constexpr std::string_view separator = " · ";
    for (std::size_t position = 1; position + separator.size() < text.size(); ++position) {
        if (text.substr(position).starts_with(separator)) {
            return true;
        }
    }
    return false;
}

std::string_view expectedName(std::string_view name) {
    for (std::size_t position = 0; position < name.size(); ++position) {
        const std::string_view kept = name.substr(0, position);
        if (name[position] == ' ' && isDigits(name.substr(position + 1)) && isOnOneLine(kept) &&
            hasTwoHalves(kept)) {
            return kept;
        }
    }
    return name;
}

}  // namespace
}  // namespace quorva

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace quorva;
    fakePlatform::reset();
    const std::string name(reinterpret_cast<const char*>(data), size);
    fakePlatform::state().putPropertyList(
        settingsFolder + "/FinderViewPresets.plist",
        PropertyList::Array{PropertyList::Dictionary{
            {"id", "i"}, {"name", name}, {"viewMode", "v"}, {"sortMode", "s"}}});
    const std::vector<FinderViewPresetSetting> presets = FinderViewPresetSettings::presets();
    require(presets.size() == 1, "a preset of any name is a preset");
    require(presets.front().name == expectedName(name), "the name loses the number of a copy");
    return 0;
}
