// The creatable classes: what the factories make and the registration names.
#pragma once

#include <windows.h>

#include <unknwn.h>

#include <span>

namespace tessaro::automation {

struct CreatableClass {
    CLSID id;
    const wchar_t* name;  ///< "clsVersion"; its ProgID is "Tessaro.clsVersion"
    const wchar_t* description;
    IUnknown* (*create)();
};

std::span<const CreatableClass> CreatableClasses();

IUnknown* NewVersion();
IUnknown* NewGameMaps();
IUnknown* NewVGAGraph();
IUnknown* NewVSwap();
IUnknown* NewAudioT();
IUnknown* NewPalette();

}  // namespace tessaro::automation
