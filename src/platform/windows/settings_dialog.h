// The window of frmIPhoneSettings. Every rule is in the form; this shows its controls and passes
// on what the user does.
#pragma once

#include "tessaro/iphone_settings.h"

namespace tessaro {

/// Returns when the form is no longer visible.
void ShowSettingsDialog(frmIPhoneSettings& form);

}  // namespace tessaro
