// frmIPhoneSettings: what the form's controls hold and what its clicks do.
#include "tessaro/iphone_settings.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

#include "maps/exchange/iphone_map.h"
#include "platform/system.h"

namespace tessaro {
namespace {

bool IsBlank(const std::string& text) {
    return text.find_first_not_of(' ') == std::string::npos;
}

std::size_t ColorIndex(std::int32_t index) {
    if (index != 0 && index != 1)
        throw Failure(kSubscriptOutOfRange);
    return static_cast<std::size_t>(index);
}

void ShowMissingValue(const char* prompt) {
    CurrentUserInterface().MsgBox(prompt, mbInformation, "Missing Value", "", 0);
}

}  // namespace

void frmIPhoneSettings::LoadSettings(const iPhoneMapSettings& Settings) {
    settings_ = Settings;
    mapName_ = Settings.MapName;
    musicName_ = Settings.MusicName;
    const ParTime parTime = SplitParTime(Settings.ParTime);
    minutes_ = parTime.minutes;
    seconds_ = parTime.seconds;
    tag_ = Settings.RLEWTag;
    colors_[0] = Settings.FloorColor;
    colors_[1] = Settings.CeilingColor;
    visible_ = pressedOK_ = false;
}

void frmIPhoneSettings::ShowModal() {
    visible_ = true;
    pressedOK_ = false;
    CurrentUserInterface().ShowIPhoneSettings(*this);
    if (visible_)  // whoever showed the form went away without an answer
        cmdCancel_Click();
}

const iPhoneMapSettings& frmIPhoneSettings::Settings() const {
    return settings_;
}

bool frmIPhoneSettings::PressedOK() const {
    return pressedOK_;
}

bool frmIPhoneSettings::Visible() const {
    return visible_;
}

const std::string& frmIPhoneSettings::txtMapName() const {
    return mapName_;
}

void frmIPhoneSettings::txtMapName(const std::string& Text) {
    mapName_ = Text;
}

const std::string& frmIPhoneSettings::txtMusicName() const {
    return musicName_;
}

void frmIPhoneSettings::txtMusicName(const std::string& Text) {
    musicName_ = Text;
}

std::int32_t frmIPhoneSettings::vsbMinutes() const {
    return minutes_;
}

void frmIPhoneSettings::vsbMinutes(std::int32_t Value) {
    minutes_ = std::clamp(Value, 0, vsbMinutesMax);
}

std::int32_t frmIPhoneSettings::vsbSeconds() const {
    return seconds_;
}

void frmIPhoneSettings::vsbSeconds(std::int32_t Value) {
    seconds_ = std::clamp(Value, 0, vsbSecondsMax);
}

std::int32_t frmIPhoneSettings::vsbRLEWTag() const {
    return tag_;
}

void frmIPhoneSettings::vsbRLEWTag(std::int32_t Value) {
    tag_ = std::clamp(Value, 0, vsbRLEWTagMax);
}

std::string frmIPhoneSettings::lblRLEWTag() const {
    std::array<char, 12> digits{};
    std::snprintf(digits.data(), digits.size(), "%04X", static_cast<unsigned>(tag_));
    return digits.data();
}

std::int32_t frmIPhoneSettings::lblColor(std::int32_t Index) const {
    return colors_[ColorIndex(Index)];
}

void frmIPhoneSettings::lblRLEWTag_Click() {
    const auto answer = CurrentUserInterface().InputBox(
        "Please enter a new tag value in hexadecimal format:", "New Tag Value");
    if (!answer || answer->empty() || answer->size() > 4)
        return;
    unsigned tag = 0;
    const char* end = answer->data() + answer->size();
    const auto parsed = std::from_chars(answer->data(), end, tag, 16);
    if (parsed.ec == std::errc() && parsed.ptr == end)
        vsbRLEWTag(static_cast<std::int32_t>(tag));
}

void frmIPhoneSettings::cmdChooseColor_Click(std::int32_t Index) {
    if (const auto chosen = CurrentUserInterface().ChooseColor(lblColor(Index)))
        colors_[ColorIndex(Index)] = *chosen;
}

void frmIPhoneSettings::cmdOK_Click() {
    if (IsBlank(mapName_))
        return ShowMissingValue("Map must have a name.");
    if (IsBlank(musicName_))
        return ShowMissingValue("Map must have music.");
    settings_.MapName = mapName_;
    settings_.MusicName = musicName_;
    settings_.ParTime = static_cast<float>(minutes_ + seconds_ / 60.0);
    settings_.RLEWTag = static_cast<std::uint16_t>(tag_);
    settings_.FloorColor = colors_[0];
    settings_.CeilingColor = colors_[1];
    pressedOK_ = true;
    visible_ = false;
}

void frmIPhoneSettings::cmdCancel_Click() {
    pressedOK_ = false;
    visible_ = false;
}

}  // namespace tessaro
