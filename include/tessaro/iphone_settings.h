// The settings of an iPhone map file, and the form in which the user enters them.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "tessaro/export.h"
#include "tessaro/types.h"

namespace tessaro {

/// What an iPhone map file holds.
struct iPhoneMapSettings {
    std::uint16_t RLEWTag = 0;
    std::uint16_t Width = 0;
    std::uint16_t Height = 0;
    std::int32_t FloorColor = 0;  ///< red in the low byte on the form; stored unchanged
    std::int32_t CeilingColor = 0;
    std::string MapName;
    std::string MusicName;
    float ParTime = 0;              ///< minutes: 1.5 is 1:30
    std::vector<ByteArray> Planes;  ///< cells as 16-bit little-endian, row by row
};

/// The form "iPhone Map File Settings" without its window: the values of its controls and what a
/// click or a change does to them. A UserInterface shows it and calls these operations; every rule
/// is here. Captions: "Floor", "Ceiling", "Par Time", "Minutes", "Seconds", "Music", "RLEW Tag".
/// The form lives within one ExportMap, which reports whatever its user interface throws; its
/// operations therefore let that through.
class TESSARO_API frmIPhoneSettings {
public:
    static constexpr const char* Caption = "iPhone Map File Settings";
    static constexpr std::int32_t vsbMinutesMax = 99;
    static constexpr std::int32_t vsbSecondsMax = 59;
    static constexpr std::int32_t vsbRLEWTagMax = 0xFFFF;

    /// Puts a record into the controls.
    void LoadSettings(const iPhoneMapSettings& Settings);
    /// Shows the form through the thread's user interface until OK or Cancel hides it.
    void ShowModal();
    /// The record with what the controls held when OK was pressed (planes and size are those
    /// loaded).
    const iPhoneMapSettings& Settings() const;
    /// Whether OK closed the form.
    bool PressedOK() const;
    /// Whether the form is still open.
    bool Visible() const;

    // The controls. A scroll bar keeps its value within 0 and its Max.
    const std::string& txtMapName() const;
    void txtMapName(const std::string& Text);
    const std::string& txtMusicName() const;
    void txtMusicName(const std::string& Text);
    std::int32_t vsbMinutes() const;
    void vsbMinutes(std::int32_t Value);
    std::int32_t vsbSeconds() const;
    void vsbSeconds(std::int32_t Value);
    std::int32_t vsbRLEWTag() const;
    void vsbRLEWTag(std::int32_t Value);
    /// The tag as four upper-case hexadecimal digits.
    std::string lblRLEWTag() const;
    /// The background colour of label `Index`: 0 the floor, 1 the ceiling.
    std::int32_t lblColor(std::int32_t Index) const;

    /// Asks for a new tag with the input box; anything but at most four hexadecimal digits
    /// changes nothing.
    void lblRLEWTag_Click();
    /// Lets the user choose the colour of label `Index`.
    void cmdChooseColor_Click(std::int32_t Index);
    /// Validates; a blank map name or music name shows its message and keeps the form open.
    void cmdOK_Click();
    void cmdCancel_Click();

private:
    iPhoneMapSettings settings_;
    std::string mapName_, musicName_;
    std::int32_t minutes_ = 0, seconds_ = 0, tag_ = 0;
    std::array<std::int32_t, 2> colors_{};
    bool visible_ = false, pressedOK_ = false;
};

}  // namespace tessaro
