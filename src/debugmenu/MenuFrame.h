#pragma once

// The frame of the driver's menus.
constexpr char kFrameRule[] = "====================================\n";
constexpr char kSectionRule[] = "------------------------------------\n";
constexpr char kExitRow[] = " 99 : Exit\n";
