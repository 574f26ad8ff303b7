#pragma once

#include <string>

#include <zarn/DebugMenu.h>

#include "DebugMenuSimple.h"
#include "TPMSDebugMenu.h"

// The consoles that live as long as the library is loaded, constructed in this order. Only the
// simple menu is destroyed, at unload.
extern TCDebugMenuTPMS debugMenuTPMS;
extern TCDebugMenuSimple debugMenuSimple;

// True while the dialogue loop serves the provider log switch menu and not a debug print control.
extern bool StatusForquarleDebug;

// Text of the process menu.
std::string CreateDebugUtilMenu();
