// What tests of the component begin with: a configuration object that knows no game.
#pragma once

#include "automation/component_host.h"
#include "support/support.h"
#include "tessaro/version.h"

namespace tessaro::test {

class Component : public testing::Test {
protected:
    void SetUp() override {
        version = Create<IVersion>(L"Tessaro.clsVersion");
        ASSERT_NE(version.Get(), nullptr);
        FreshStore(folder.Path());
        VARIANT_BOOL found = VARIANT_TRUE;  // without a game it forgets what an earlier test set
        ASSERT_EQ(version->LoadDataPath(Text(folder.Path()), &found), S_OK);
        ASSERT_EQ(found, VARIANT_FALSE);
        version->put_AppPath(Text(folder.Path()));
    }

    HRESULT UnloadNow() {
        const auto canUnload = reinterpret_cast<HRESULT(WINAPI*)()>(reinterpret_cast<void*>(
            GetProcAddress(GetModuleHandleA("tessaro.dll"), "DllCanUnloadNow")));
        return canUnload();
    }

    TempFolder folder;
    ComponentScope component;
    Ref<IVersion> version;
};

}  // namespace tessaro::test
